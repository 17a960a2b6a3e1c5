#include "ui/mainwindow/TimelineDelegate.h"

#include <QApplication>
#include <QStyle>
#include <algorithm>
#include <cmath>

#include "ui/mainwindow/TimelineModel.h"

namespace mirvel::ui {

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
