#include "ui/support/FlowLayout.h"

#include <QLabel>
#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace mirvel::ui {

namespace {

/// A label, such as the unit after a number: it never begins a line.
bool isWord(QLayoutItem* item) {
  return qobject_cast<QLabel*>(item->widget()) != nullptr;
}

}  // namespace

FlowLayout::~FlowLayout() = default;

QLayoutItem* FlowLayout::itemAt(int index) const {
  return index >= 0 && index < count() ? m_items[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
  if (index < 0 || index >= count()) return nullptr;
  const auto at = m_items.begin() + index;
  QLayoutItem* item = at->release();
  m_items.erase(at);
  return item;
}

int FlowLayout::gap() const {
  if (spacing() >= 0) return spacing();
  const QWidget* const widget = parentWidget();
  if (!widget) return 0;
  const int metric = widget->style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing, nullptr, widget);
  if (metric >= 0) return metric;
  // The style has no uniform spacing, only one that depends on the kinds of the neighbours.
  return std::max(0, widget->style()->layoutSpacing(QSizePolicy::ComboBox, QSizePolicy::ComboBox, Qt::Horizontal));
}

std::vector<FlowLayout::Line> FlowLayout::lines(int width) const {
  std::vector<QLayoutItem*> items;
  for (const auto& item : m_items) {
    if (!item->isEmpty()) items.push_back(item.get());
  }
  const auto widthOf = [width](const QLayoutItem* item) { return std::min(item->sizeHint().width(), width); };
  std::vector<Line> result;
  for (std::size_t at = 0; at < items.size();) {
    std::size_t end = at + 1;
    int needed = widthOf(items[at]);
    for (; end < items.size() && isWord(items[end]); ++end) needed += gap() + widthOf(items[end]);
    if (result.empty() || result.back().width + gap() + needed > width) result.emplace_back();
    Line& line = result.back();
    line.width += needed + (line.items.empty() ? 0 : gap());
    for (; at < end; ++at) {
      line.height = std::max(line.height, items[at]->sizeHint().height());
      line.items.push_back(items[at]);
    }
  }
  return result;
}

void FlowLayout::place(const Line& line, QRect within) const {
  const auto direction = parentWidget() ? parentWidget()->layoutDirection() : Qt::LeftToRight;
  int x = within.left();
  for (QLayoutItem* item : line.items) {
    const QSize size = item->sizeHint().boundedTo(within.size());
    const QRect place(QPoint(x, within.top() + (line.height - size.height()) / 2), size);
    item->setGeometry(QStyle::visualRect(direction, within, place));
    x += size.width() + gap();
  }
}

void FlowLayout::setGeometry(const QRect& rect) {
  QLayout::setGeometry(rect);
  const QRect inner = rect.marginsRemoved(contentsMargins());
  int y = inner.top();
  for (const Line& line : lines(inner.width())) {
    place(line, QRect(inner.left(), y, inner.width(), line.height));
    y += line.height + gap();
  }
}

int FlowLayout::heightForWidth(int width) const {
  const QMargins margins = contentsMargins();
  int height = -gap();
  for (const Line& line : lines(width - margins.left() - margins.right())) height += line.height + gap();
  return std::max(height, 0) + margins.top() + margins.bottom();
}

QSize FlowLayout::sizeHint() const {
  int width = -gap(), height = 0;
  for (const auto& item : m_items) {
    if (item->isEmpty()) continue;
    width += item->sizeHint().width() + gap();
    height = std::max(height, item->sizeHint().height());
  }
  return QSize(std::max(width, 0), height).grownBy(contentsMargins());
}

QSize FlowLayout::minimumSize() const {
  QSize size;
  for (const auto& item : m_items) size = size.expandedTo(item->minimumSize());
  return size.grownBy(contentsMargins());
}

}  // namespace mirvel::ui
