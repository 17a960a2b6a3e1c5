#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <string>

#include "core/catalogue/Launchd.h"
#include "ui/mainwindow/WindowFixture.h"

namespace mirvel::ui {

/// The control of that name in the details that a window shows. Throws if there is none.
template <typename Control>
Control& control(const MainWindow& window, const char* name) {
  auto* const found = window.details().currentWidget()->findChild<Control*>(QLatin1String(name));
  if (!found) throw std::runtime_error(std::string("no control ") + name);
  return *found;
}

/// The button in the details with that text.
inline QPushButton& button(const MainWindow& window, const std::string& text) {
  for (auto* found : window.details().currentWidget()->findChildren<QPushButton*>()) {
    if (found->text() == qt(text)) return *found;
  }
  throw std::runtime_error("no button " + text);
}

/// Clicks a check box where its box is.
inline void clickBox(QCheckBox& box, Qt::KeyboardModifiers modifiers = {}) {
  QTest::mouseClick(&box, Qt::LeftButton, modifiers, QPoint(8, box.height() / 2));
}

/// A window with jobs, of which one is being edited.
class EditorFixture : public WindowFixture {
 protected:
  /// Selects the first job, and has it edited.
  void edit(propertylist::Dictionary keys) {
    writeJob(Kind::userAgent, "a", std::move(keys));
    (void)window();
    scan();
    testdata::settle();
    click(0);
    QTest::keyClick(&window(), Qt::Key_E, Qt::ControlModifier);
    ASSERT_EQ(program().shell.detail->detailTab(), DetailTab::LaunchdEdit);
  }
  jobfile::Plist& record() { return dynamic_cast<Launchd&>(*program().selection.job()).plist(); }
  bool hasChanges() { return program().editing.hasUnsavedChanges(); }
  template <typename Control>
  Control& control(const char* name) {
    return ui::control<Control>(window(), name);
  }
  QPushButton& button(const std::string& text) { return ui::button(window(), text); }
};

}  // namespace mirvel::ui
