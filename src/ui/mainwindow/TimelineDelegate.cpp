#include "ui/mainwindow/TimelineDelegate.h"

#include <QApplication>
#include <QStyle>
#include <algorithm>
#include <cmath>
#include <vector>

#include "ui/mainwindow/TimelineModel.h"

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

namespace {

QStyle& styleOf(const QStyleOptionViewItem& option) {
  return option.widget ? *option.widget->style() : *QApplication::style();
}

int marginOf(const QStyleOptionViewItem& option) {
  return option.fontMetrics.averageCharWidth() * 3 / 2;
}

QPalette::ColorGroup groupOf(const QStyleOptionViewItem& option) {
  return option.state.testFlag(QStyle::State_Active) ? QPalette::Normal : QPalette::Inactive;
}

/// A part of the row, `from` pixels from its leading edge.
QRect leading(const QStyleOptionViewItem& option, int from, int width) {
  const QRect rect(option.rect.left() + from, option.rect.top(), width, option.rect.height());
  return QStyle::visualRect(option.direction, option.rect, rect);
}

/// Draws one line, aligned to the leading edge and elided at the end of the text.
void drawLine(QPainter& painter, const QStyleOptionViewItem& option, const QRect& rect, const QString& text) {
  const auto side = option.direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
  painter.setLayoutDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
  const QString shown = painter.fontMetrics().elidedText(text, Qt::ElideRight, rect.width());
  painter.drawText(rect, static_cast<int>(side | Qt::AlignAbsolute | Qt::AlignVCenter | Qt::TextSingleLine), shown);
}

}  // namespace

TimelineDelegate::TimelineDelegate(std::function<QStringList()> sampleTimes, QObject* parent)
    : QStyledItemDelegate(parent), m_sampleTimes(std::move(sampleTimes)), m_times(QFont()) {}

void TimelineDelegate::measure(const QFont& font) {
  m_times = TabularText(font);
  qreal widest = 0;
  for (const QString& time : m_sampleTimes()) widest = std::max(widest, m_times.width(time));
  m_timeWidth = static_cast<int>(std::ceil(widest));
}

void TimelineDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  QStyleOptionViewItem filled = option;
  initStyleOption(&filled, index);
  painter->save();
  painter->setClipRect(option.rect, Qt::IntersectClip);
  if (index.data(TimelineModel::IsGroupRole).toBool()) {
    paintGroup(*painter, filled);
  } else {
    paintRun(*painter, filled, index);
  }
  painter->restore();
}

void TimelineDelegate::paintGroup(QPainter& painter, const QStyleOptionViewItem& option) const {
  const QPalette::ColorGroup group = groupOf(option);
  painter.fillRect(option.rect, option.palette.color(group, QPalette::Window));
  QColor line = option.palette.color(group, QPalette::Text);
  line.setAlphaF(0.15F);
  painter.fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1), line);

  QFont font = option.font;
  font.setWeight(QFont::DemiBold);
  painter.setFont(font);
  painter.setPen(option.palette.color(group, QPalette::WindowText));
  const int margin = marginOf(option);
  drawLine(painter, option, leading(option, margin, option.rect.width() - 2 * margin), option.text);
}

void TimelineDelegate::paintRun(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  QStyleOptionViewItem background = option;
  background.text.clear();
  styleOf(option).drawControl(QStyle::CE_ItemViewItem, &background, &painter, option.widget);

  const QPalette::ColorGroup group = groupOf(option);
  const bool isSelected = option.state.testFlag(QStyle::State_Selected);
  const auto color = [&](QPalette::ColorRole role) {
    return option.palette.color(group, isSelected ? QPalette::HighlightedText : role);
  };
  const bool isMirrored = option.direction == Qt::RightToLeft;
  const int margin = marginOf(option);
  painter.setPen(color(QPalette::Text));
  m_times.draw(painter, leading(option, margin, m_timeWidth), isMirrored ? Qt::AlignLeft : Qt::AlignRight,
               index.data(TimelineModel::TimeRole).toString());

  painter.setFont(option.font);
  const bool isSecondary = index.data(TimelineModel::IsSecondaryRole).toBool();
  painter.setPen(color(isSecondary ? QPalette::PlaceholderText : QPalette::Text));
  const int nameStart = margin + m_timeWidth + 3 * margin / 2;
  drawLine(painter, option, leading(option, nameStart, option.rect.width() - nameStart - margin), option.text);
}

}  // namespace mirvel::ui
