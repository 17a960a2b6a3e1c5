#include "ui/scripts/ScriptSettings.h"

#include <QApplication>
#include <QEvent>
#include <QPalette>

#include "core/session/Notifications.h"
#include "core/settings/Defaults.h"
#include "ui/scripts/ScriptText.h"
#include "ui/support/Palettes.h"

namespace mirvel::ui {

namespace {

const char* nameOfScripts() {
  return ScriptText::staticMetaObject.className();
}

/// Ends a subscription together with a widget.
class Follower final : public QObject {
 public:
  Follower(ScriptText& script, Defaults& defaults)
      : QObject(&script), m_changed(defaults.changed().subscribe([&script, &defaults](const std::string& key) {
          if (key == Defaults::Key::showLineNumbers) script.setLineNumbersVisible(defaults.showLineNumbers());
        })) {}

 private:
  Subscription m_changed;
};

}  // namespace

std::optional<QPalette> themePalette(Theme theme) {
  switch (theme) {
    case Theme::Automatic:
      return std::nullopt;
    case Theme::Light:
      return paletteOf(Scheme::Light);
    case Theme::Dark:
      return paletteOf(Scheme::Dark);
    case Theme::HighContrast:
      return highContrastPalette();
  }
  return std::nullopt;
}

ScriptTheme::ScriptTheme(const Defaults& defaults, Notifications& notifications)
    : m_defaults(defaults), m_themeChanged(notifications.themeChanged.subscribe([this] { apply(); })) {
  QCoreApplication::instance()->installEventFilter(this);
  apply();
}

ScriptTheme::~ScriptTheme() {
  if (m_isApplied) QApplication::setPalette(QApplication::palette(), nameOfScripts());
}

/// A palette of the application replaces those of classes.
bool ScriptTheme::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ApplicationPaletteChange && watched == QCoreApplication::instance()) apply();
  return false;
}

void ScriptTheme::apply() {
  const auto palette = themePalette(Themes::current(m_defaults));
  if ((!palette && !m_isApplied) || m_isApplying) return;
  m_isApplied = m_isApplying = true;  // Qt reports the palette of a class like that of the application
  QApplication::setPalette(palette.value_or(QApplication::palette()), nameOfScripts());
  m_isApplying = false;
}

void followLineNumbers(ScriptText& script, Defaults& defaults) {
  script.setLineNumbersVisible(defaults.showLineNumbers());
  new Follower(script, defaults);
}

}  // namespace mirvel::ui
