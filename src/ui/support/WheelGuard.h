#pragma once

#include <QEvent>
#include <QWidget>

namespace mirvel::ui {

/// Leaves the wheel to what lies around a control that doesn't have the keys, so that scrolling past it changes
/// nothing.
class WheelGuard final : public QObject {
 public:
  /// Lives as long as the control, which no longer takes the keys by the wheel.
  static void guard(QWidget& control) {
    control.setFocusPolicy(Qt::StrongFocus);
    control.installEventFilter(new WheelGuard(&control));
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    const auto* control = qobject_cast<QWidget*>(watched);
    if (event->type() != QEvent::Wheel || !control || control->hasFocus()) return false;
    event->ignore();
    return true;
  }

 private:
  explicit WheelGuard(QWidget* control) : QObject(control) {}
};

}  // namespace mirvel::ui
