#include "ui/editor/GrowingText.h"

#include <QTextBlock>
#include <QTextOption>
#include <QWheelEvent>
#include <algorithm>

namespace mirvel::ui {

namespace {

constexpr int mostLines = 12;  // a longer text scrolls

}  // namespace

GrowingText::GrowingText(int fewestLines, QWidget* parent) : QPlainTextEdit(parent), m_fewestLines(fewestLines) {
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  connect(this, &QPlainTextEdit::textChanged, this, [this] { fitHeight(); });
  fitHeight();
}

QString GrowingText::exactText() const {
  return document()->toRawText().replace(QChar(QChar::ParagraphSeparator), QLatin1Char('\n'));
}

int GrowingText::textTop() const {
  return frameWidth() + static_cast<int>(document()->documentMargin());
}

QSize GrowingText::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 30, height()};
}

QSize GrowingText::minimumSizeHint() const {
  return {fontMetrics().averageCharWidth() * 8, minimumHeight()};
}

void GrowingText::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  fitHeight();
}

void GrowingText::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) fitHeight();
}

void GrowingText::fitHeight() {
  int lines = 0;
  for (QTextBlock block = document()->begin(); block.isValid() && lines <= mostLines; block = block.next()) {
    lines += std::max(1, block.lineCount());
  }
  setVerticalScrollBarPolicy(lines > mostLines ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
  const int shown = std::clamp(lines, m_fewestLines, mostLines);
  const int fitting = shown * fontMetrics().lineSpacing() + 2 * textTop();
  if (fitting != minimumHeight()) setFixedHeight(fitting);
}

void GrowingText::wheelEvent(QWheelEvent* event) {
  if (verticalScrollBarPolicy() == Qt::ScrollBarAlwaysOff) {
    event->ignore();  // scrolls the surrounding pane
  } else {
    QPlainTextEdit::wheelEvent(event);
  }
}

}  // namespace mirvel::ui
