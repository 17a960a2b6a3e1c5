#include "ui/mainwindow/TimelineLayout.h"

#include <algorithm>

namespace mirvel::ui {

TimelineLayout::TimelineLayout(std::size_t rows, std::vector<std::size_t> groups, Heights heights)
    : m_count(static_cast<int>(rows)), m_groups(groups.begin(), groups.end()), m_heights(heights) {}

int TimelineLayout::groupsBefore(int row) const {
  return static_cast<int>(std::lower_bound(m_groups.begin(), m_groups.end(), row) - m_groups.begin());
}

int TimelineLayout::top(int row) const {
  return row * m_heights.other + groupsBefore(row) * (m_heights.group - m_heights.other);
}

int TimelineLayout::rowAt(int y) const {
  // From the last header at or above `y` down to the next header, all rows have the same height.
  const auto below = std::upper_bound(m_groups.begin(), m_groups.end(), y,
                                      [this](int place, int group) { return place < top(group); });
  if (below == m_groups.begin()) return y / m_heights.other;
  const int group = *(below - 1);
  const int distance = y - top(group);
  return distance < m_heights.group ? group : group + 1 + (distance - m_heights.group) / m_heights.other;
}

bool TimelineLayout::isGroup(int row) const {
  return std::binary_search(m_groups.begin(), m_groups.end(), row);
}

int TimelineLayout::groupOf(int row) const {
  const int before = groupsBefore(row + 1);
  return before == 0 ? -1 : m_groups[static_cast<std::size_t>(before) - 1];
}

int TimelineLayout::nextGroup(int row) const {
  const auto next = std::upper_bound(m_groups.begin(), m_groups.end(), row);
  return next == m_groups.end() ? m_count : *next;
}

int TimelineLayout::nearestOther(int row, int step) const {
  while (row >= 0 && row < m_count && isGroup(row)) row += step;
  return row >= 0 && row < m_count ? row : -1;
}

}  // namespace mirvel::ui
