#include "ui/support/Controls.h"

#include <QEvent>
#include <QGuiApplication>
#include <QSignalBlocker>
#include <QStyleOptionButton>
#include <QStylePainter>

namespace mirvel::ui {

namespace {

class WheelGuard final : public QObject {
 public:
  explicit WheelGuard(QWidget* control) : QObject(control) {}

  bool eventFilter(QObject* watched, QEvent* event) override {
    const auto* control = qobject_cast<QWidget*>(watched);
    if (event->type() != QEvent::Wheel || !control || control->hasFocus()) return false;
    event->ignore();
    return true;
  }
};

void drawButton(QWidget& button, QStyle::ControlElement element, QStyleOptionButton& option) {
  option.palette = boxPalette(option.palette);
  QStylePainter(&button).drawControl(element, option);
}

}  // namespace

QPalette boxPalette(QPalette palette) {
  palette.setColor(QPalette::Window, palette.color(QPalette::PlaceholderText));
  return palette;
}

void CheckBox::paintEvent(QPaintEvent* /*event*/) {
  QStyleOptionButton option;
  initStyleOption(&option);
  drawButton(*this, QStyle::CE_CheckBox, option);
}

void RadioButton::paintEvent(QPaintEvent* /*event*/) {
  QStyleOptionButton option;
  initStyleOption(&option);
  drawButton(*this, QStyle::CE_RadioButton, option);
}

void discard(QWidget* widget) {
  if (!widget) return;
  widget->hide();
  widget->setParent(nullptr);
  widget->deleteLater();
}

void setCheckedQuietly(QAbstractButton& button, bool isChecked) {
  const QSignalBlocker quiet(button);
  button.setChecked(isChecked);
}

QString literalTitle(QString text) {
  return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

bool optionHeld() {
#ifdef __linux__
  constexpr Qt::KeyboardModifiers keys = Qt::AltModifier | Qt::ControlModifier;
#else
  constexpr Qt::KeyboardModifiers keys = Qt::AltModifier;
#endif
  return (QGuiApplication::keyboardModifiers() & keys) != Qt::NoModifier;
}

void guardFromWheel(QWidget& control) {
  control.setFocusPolicy(Qt::StrongFocus);
  control.installEventFilter(new WheelGuard(&control));
}

void endEditing(const QWidget& form) {
  QWidget* const focus = form.focusWidget();
  if (!focus || !form.isAncestorOf(focus) || !focus->hasFocus()) return;
  focus->clearFocus();
  focus->setFocus();
}

}  // namespace mirvel::ui
