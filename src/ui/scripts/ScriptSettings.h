#pragma once

#include <QObject>
#include <QPalette>
#include <optional>

#include "core/base/Signal.h"
#include "core/preferences/Themes.h"

namespace mirvel {
class Defaults;
struct Notifications;
}  // namespace mirvel

namespace mirvel::ui {

class ScriptText;

/// The palette of scripts in a theme; none for `Automatic`, where they have that of their windows.
std::optional<QPalette> themePalette(Theme theme);

/// Gives all scripts of the application the colours of the chosen theme, and new ones when the theme changes. With the
/// automatic theme they have the colours of their windows. Text, undo history and selection aren't touched. At most one
/// may exist in a process.
///
/// The theme is the palette that Qt applies to all widgets of the class `ScriptText`, so that a script needs to know
/// nothing about themes, wherever it is shown.
class ScriptTheme final : public QObject {
 public:
  /// Both must outlive this object. Requires a QApplication.
  ScriptTheme(const Defaults& defaults, Notifications& notifications);
  ~ScriptTheme() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void apply();

  const Defaults& m_defaults;
  bool m_isApplying = false;
  bool m_isApplied = false;  ///< the class has a palette of its own, which has to follow that of the application
  Subscription m_themeChanged;
};

/// Shows or hides the line numbers of a script according to the setting, now and whenever it changes. The settings must
/// outlive the script.
void followLineNumbers(ScriptText& script, Defaults& defaults);

}  // namespace mirvel::ui
