#pragma once

#include <QGroupBox>
#include <QWidget>

#include "core/base/Signal.h"
#include "core/preferences/PreferencesContext.h"
#include "core/preferences/SettingSwitches.h"

class QLabel;
class QLayout;

namespace mirvel::ui {

class CheckBox;

/// The check box of a setting, with its explanation below. Follows changes of the setting elsewhere.
class SwitchView final : public QWidget {
 public:
  /// The context must outlive the view.
  SwitchView(const PreferencesContext& context, const SettingSwitch& row);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  QLayout* makeHint(const SettingSwitch& row);
  void showSign();
  void clicked(bool isOn);

  const PreferencesContext& m_context;
  const std::string m_key;
  CheckBox* m_box;
  QLabel* m_sign = nullptr;  ///< of a warning
  Subscription m_changed;
};

/// A titled box for the controls of one subject.
QGroupBox* makeGroup(const std::string& title);
/// The same with check boxes. The context must outlive it.
QGroupBox* makeGroup(const PreferencesContext& context, const SettingGroup& group);
/// A label of several lines, as high as its text.
QLabel* makeParagraph(const std::string& text);

}  // namespace mirvel::ui
