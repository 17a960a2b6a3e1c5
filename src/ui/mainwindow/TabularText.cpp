#include "ui/mainwindow/TabularText.h"

#include <algorithm>
#include <vector>

namespace mirvel::ui {

namespace {

bool isDigit(QChar character) {
  return character >= u'0' && character <= u'9';
}

/// Splits a text into single digits and the stretches between them.
std::vector<QStringView> partsOf(const QString& text) {
  std::vector<QStringView> parts;
  for (qsizetype begin = 0, end = 0; begin < text.size(); begin = end) {
    end = begin + 1;
    while (!isDigit(text[begin]) && end < text.size() && !isDigit(text[end])) ++end;
    parts.push_back(QStringView(text).mid(begin, end - begin));
  }
  return parts;
}

}  // namespace

TabularText::TabularText(const QFont& font) : m_font(font), m_metrics(font) {
  const qreal first = m_metrics.horizontalAdvance(u'0');
  for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
    const qreal width = m_metrics.horizontalAdvance(QChar(digit));
    m_areDigitsAlike = m_areDigitsAlike && qFuzzyCompare(width, first);
    m_digitWidth = std::max(m_digitWidth, width);
  }
}

/// Whether the text can be drawn in one piece: the digits have equal widths already, or it contains right-to-left
/// characters, whose order drawing in pieces would break.
bool TabularText::isPlain(const QString& text) const {
  const auto isOfTheRight = [](QChar character) {
    return character.direction() == QChar::DirR || character.direction() == QChar::DirAL;
  };
  return m_areDigitsAlike || std::any_of(text.begin(), text.end(), isOfTheRight);
}

qreal TabularText::width(QStringView part) const {
  return isDigit(part.front()) ? m_digitWidth : m_metrics.horizontalAdvance(part.toString());
}

qreal TabularText::width(const QString& text) const {
  if (isPlain(text)) return m_metrics.horizontalAdvance(text);
  qreal sum = 0;
  for (const QStringView part : partsOf(text)) sum += width(part);
  return sum;
}

void TabularText::draw(QPainter& painter, const QRectF& rect, Qt::AlignmentFlag side, const QString& text) const {
  painter.setFont(m_font);
  if (isPlain(text)) {
    painter.drawText(rect, static_cast<int>(Qt::AlignVCenter | Qt::AlignAbsolute | side), text);
    return;
  }
  qreal left = side == Qt::AlignLeft ? rect.left() : rect.right() - width(text);
  for (const QStringView part : partsOf(text)) {
    const QRectF cell(left, rect.top(), width(part), rect.height());
    const auto place = isDigit(part.front()) ? Qt::AlignHCenter : Qt::AlignLeft;
    painter.drawText(cell, static_cast<int>(Qt::AlignVCenter | Qt::TextDontClip | place), part.toString());
    left = cell.right();
  }
}

}  // namespace mirvel::ui
