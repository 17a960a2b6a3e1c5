#include "ui/support/Labels.h"

#include <QEvent>
#include <QFontDatabase>
#include <QPainter>
#include <QTextDocument>
#include <QTextOption>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

SecondaryLabel::SecondaryLabel(const QString& text, QWidget* parent) : QLabel(text, parent) {
  setTextFormat(Qt::PlainText);
  setForegroundRole(QPalette::PlaceholderText);
}

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);  // a file name may look like markup
}

void ElidedLabel::setFullText(const QString& text) {
  m_text = shownText(utf8(text)).simplified();  // a file name may contain line breaks
  setAccessibleName(m_text);
  updateGeometry();
  elide();
}

QSize ElidedLabel::sizeHint() const {
  const int widest = 60 * fontMetrics().averageCharWidth();
  const int all = fontMetrics().horizontalAdvance(m_text) + 2 * margin();
  return {std::min(all, widest), QLabel::sizeHint().height()};
}

QSize ElidedLabel::minimumSizeHint() const {
  return {8 * fontMetrics().averageCharWidth(), QLabel::minimumSizeHint().height()};
}

void ElidedLabel::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  elide();
}

void ElidedLabel::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::FontChange) elide();
}

void ElidedLabel::elide() {
  const QString shown = fontMetrics().elidedText(m_text, Qt::ElideMiddle, contentsRect().width());
  if (shown != text()) setText(shown);
  setToolTip(shown == m_text ? QString() : shownToolTip(utf8(m_text)));
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
  if (height == minimumHeight()) return;
  setFixedHeight(height);
  setViewportMargins(0, 0, 0, 0);  // lays out the viewport, which Qt omits if the height changes within a resize
}

void ValueText::wheelEvent(QWheelEvent* event) {
  event->ignore();  // scrolls the surrounding pane
}

}  // namespace mirvel::ui
