#pragma once

#include <stdexcept>
#include <string>

#include "ui/mainwindow/WindowFixture.h"

namespace mirvel::ui {

/// A sheet of the main window, and the keys and clicks of the user in it. `Sheet` is its class or a base class of it.
template <typename Sheet>
class SheetFixture : public WindowFixture {
 protected:
  /// The sheet that is open, once it is active and has the focus.
  template <typename Special = Sheet>
  Special& sheet() {
    auto* const found = window().template findChild<Special*>();
    if (!found) throw std::runtime_error("no sheet");
    if (!found->isActiveWindow()) {
      found->activateWindow();
      EXPECT_TRUE(QTest::qWaitForWindowActive(found));
      testdata::settle();
    }
    return *found;
  }
  bool hasSheet() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return window().template findChild<Sheet*>() != nullptr;
  }
  template <typename Control>
  Control& control(const char* name) {
    auto* const found = window().template findChild<Control*>(QLatin1String(name));
    if (!found) throw std::runtime_error(std::string("no control ") + name);
    return *found;
  }
  /// Presses a key in the control that has the focus.
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QWidget* const focused = sheet().focusWidget();
    QTest::keyClick(focused ? focused : &sheet(), key, modifiers);
    testdata::settle();  // the next page may have to be laid out
  }
  void type(const char* text) { QTest::keyClicks(sheet().focusWidget(), QLatin1String(text)); }
};

}  // namespace mirvel::ui
