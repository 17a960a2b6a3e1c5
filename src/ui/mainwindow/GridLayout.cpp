#include "ui/mainwindow/GridLayout.h"

#include <algorithm>

namespace mirvel::ui {

void GridLayout::setCounts(const std::vector<int>& counts) {
  m_groups.clear();
  int first = 0;
  for (const int count : counts) {
    m_groups.push_back({.first = first, .count = count});
    first += count;
  }
  arrange();
}

void GridLayout::setMeasures(const GridMeasures& measures) {
  m_measures = measures;
  arrange();
}

void GridLayout::setWidth(int width) {
  m_width = width;
  arrange();
}

void GridLayout::arrange() {
  m_columns = std::max(1, (m_width - 2 * m_measures.margin) / m_measures.cell.width());
  int top = 0;
  for (Group& group : m_groups) {
    group.lines = (group.count + m_columns - 1) / m_columns;
    group.top = top;
    group.height = m_measures.header + group.lines * m_measures.cell.height() + m_measures.gap;
    top += group.height;
  }
}

int GridLayout::count() const {
  return m_groups.empty() ? 0 : m_groups.back().first + m_groups.back().count;
}

int GridLayout::height() const {
  return m_groups.empty() ? 0 : m_groups.back().top + m_groups.back().height;
}

std::size_t GridLayout::groupOf(int row) const {
  const auto after = std::upper_bound(m_groups.begin(), m_groups.end(), row,
                                      [](int item, const Group& group) { return item < group.first; });
  return static_cast<std::size_t>(after - m_groups.begin()) - 1;
}

int GridLayout::column(int row) const {
  return (row - m_groups[groupOf(row)].first) % m_columns;
}

QRect GridLayout::item(int row) const {
  if (row < 0 || row >= count()) return {};
  const Group& group = m_groups[groupOf(row)];
  const int place = row - group.first;
  const int shared = std::max(m_width - 2 * m_measures.margin, m_measures.cell.width());
  // The remainder of the division is spread over all columns.
  const int left = m_measures.margin + place % m_columns * shared / m_columns;
  const int right = m_measures.margin + (place % m_columns + 1) * shared / m_columns;
  int x = left + (right - left - m_measures.cell.width()) / 2;
  if (m_direction == Qt::RightToLeft) x = m_width - x - m_measures.cell.width();
  return {QPoint(x, firstLineTop(group) + place / m_columns * m_measures.cell.height()), m_measures.cell};
}

QRect GridLayout::header(int section, int top) const {
  const Group& group = m_groups[static_cast<std::size_t>(section)];
  const int lowest = group.top + group.height - m_measures.header;
  return {0, std::clamp(top, group.top, lowest), m_width, m_measures.header};
}

int GridLayout::itemAt(QPoint point) const {
  for (const auto& [first, last] : itemsIn(point.y(), point.y() + 1)) {
    for (int row = first; row <= last; ++row) {
      if (item(row).contains(point)) return row;
    }
  }
  return -1;
}

std::vector<int> GridLayout::sectionsIn(int top, int bottom) const {
  std::vector<int> sections;
  for (std::size_t i = 0; i < m_groups.size(); ++i) {
    const Group& group = m_groups[i];
    if (group.top < bottom && group.top + group.height > top) sections.push_back(static_cast<int>(i));
  }
  return sections;
}

std::vector<std::pair<int, int>> GridLayout::itemsIn(int top, int bottom) const {
  std::vector<std::pair<int, int>> ranges;
  for (const Group& group : m_groups) {
    const int above = std::max(0, top - firstLineTop(group));
    const int reach = bottom - firstLineTop(group);
    if (reach <= 0) break;
    const int firstLine = above / m_measures.cell.height();
    const int lastLine = std::min(group.lines - 1, (reach - 1) / m_measures.cell.height());
    if (firstLine > lastLine) continue;
    ranges.emplace_back(group.first + firstLine * m_columns,
                        group.first + std::min(group.count, (lastLine + 1) * m_columns) - 1);
  }
  return ranges;
}

int GridLayout::itemInLine(const Group& group, int line, int column) const {
  return group.first + std::min(line * m_columns + column, group.count - 1);
}

int GridLayout::below(int row, int column) const {
  const std::size_t section = groupOf(row);
  const Group& group = m_groups[section];
  const int line = (row - group.first) / m_columns;
  if (line + 1 < group.lines) return itemInLine(group, line + 1, column);
  return section + 1 < m_groups.size() ? itemInLine(m_groups[section + 1], 0, column) : row;
}

int GridLayout::above(int row, int column) const {
  const std::size_t section = groupOf(row);
  const Group& group = m_groups[section];
  const int line = (row - group.first) / m_columns;
  if (line > 0) return itemInLine(group, line - 1, column);
  if (section == 0) return row;
  const Group& before = m_groups[section - 1];
  return itemInLine(before, before.lines - 1, column);
}

}  // namespace mirvel::ui
