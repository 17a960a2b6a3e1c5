#include "ui/support/Labels.h"

#include <QFontDatabase>
#include <QPainter>
#include <QTextDocument>
#include <QTextOption>
#include <QWheelEvent>
#include <cmath>

namespace mirvel::ui {

SecondaryLabel::SecondaryLabel(const QString& text, QWidget* parent) : QLabel(text, parent) {
  setTextFormat(Qt::PlainText);
  setForegroundRole(QPalette::PlaceholderText);
}

Hairline::Hairline(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Hairline::paintEvent(QPaintEvent* /*event*/) {
  QColor color = palette().color(QPalette::WindowText);
  color.setAlphaF(0.22F);
  QPainter(this).fillRect(rect(), color);
}

void drawEmptyLabel(QWidget& widget, const QString& text) {
  if (text.isEmpty()) return;
  QPainter painter(&widget);
  QFont large = widget.font();
  large.setPointSizeF(large.pointSizeF() * 1.5);
  painter.setFont(large);
  painter.setPen(widget.palette().color(QPalette::PlaceholderText));
  painter.drawText(widget.rect(), Qt::AlignCenter | Qt::TextWordWrap, text);
}

ValueText::ValueText(const QString& text, QWidget* parent) : QTextEdit(parent) {
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setTabChangesFocus(true);
  setFrameShape(NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  viewport()->setAutoFillBackground(false);
  document()->setDocumentMargin(0);
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  setTextDirection(Qt::LayoutDirectionAuto);
  connect(this, &QTextEdit::textChanged, this, [this] { fitHeight(); });
  setPlainText(text);
}

void ValueText::setTextDirection(Qt::LayoutDirection direction) {
  // In a right-to-left window, left-to-right text is aligned to the right as well.
  QTextOption option(Qt::AlignAbsolute | (isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft));
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  option.setTextDirection(direction);
  document()->setDefaultTextOption(option);
}

void ValueText::setCode() {
  setTextFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  setTextDirection(Qt::LeftToRight);
}

void ValueText::setTextFont(const QFont& font) {
  setFont(font);
  document()->setDefaultFont(font);
}

QSize ValueText::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 30, fontMetrics().height()};
}

QSize ValueText::minimumSizeHint() const {
  return {fontMetrics().averageCharWidth() * 8, fontMetrics().height()};
}

void ValueText::resizeEvent(QResizeEvent* event) {
  QTextEdit::resizeEvent(event);
  fitHeight();
}

void ValueText::fitHeight() {
  const int height = static_cast<int>(std::ceil(document()->size().height()));
  if (height != minimumHeight()) setFixedHeight(height);
}

void ValueText::wheelEvent(QWheelEvent* event) {
  event->ignore();  // scrolls the surrounding pane
}

}  // namespace mirvel::ui
