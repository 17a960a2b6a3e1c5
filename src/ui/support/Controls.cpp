#include "ui/support/Controls.h"

#include <QEvent>
#include <QGuiApplication>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QStyleOptionButton>
#include <QStylePainter>

#include "core/locale/Localize.h"
#include "ui/support/IconLoader.h"
#include "ui/support/QtText.h"

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
  // A disabled box shows a value that must be readable. Many palettes make disabled text almost invisible.
  const QColor quiet = option.palette.color(QPalette::Active, QPalette::PlaceholderText);
  option.palette.setColor(QPalette::Disabled, QPalette::WindowText, quiet);
  option.palette.setColor(QPalette::Disabled, QPalette::Text, quiet);
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

QToolButton* symbolButton(const char* symbol, const std::string& title, QWidget* parent) {
  auto* button = new QToolButton(parent);
  button->setIcon(IconLoader::symbol(symbol));
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::TabFocus);
  button->setAccessibleName(qt(title));
  button->setToolTip(qt(title));
  return button;
}

void nameButtons(const QWidget& owner, const QString& name) {
  for (auto* button : owner.findChildren<QToolButton*>()) {
    if (button->text().isEmpty() && button->accessibleName().isEmpty()) button->setAccessibleName(name);
  }
}

QLineEdit* filterField(const Localize& localize) {
  auto* field = new QLineEdit;
  const QString name = qt(localize.filter());
  field->setPlaceholderText(name);
  field->setAccessibleName(name);
  field->setClearButtonEnabled(true);
  nameButtons(*field, qt(localize.cancel()));
  field->addAction(IconLoader::symbol("edit-find"), QLineEdit::LeadingPosition);
  nameButtons(*field, name);
  return field;
}

}  // namespace mirvel::ui
