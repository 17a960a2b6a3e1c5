#pragma once

#include <cstddef>
#include <vector>

namespace mirvel::ui {

/// Where the rows of a timeline lie, in pixels from the first one's top. Headers are higher than the other rows; there
/// are few of them, so that every question is answered without a walk through the rows.
class TimelineLayout {
 public:
  struct Heights {
    int group = 1;
    int other = 1;
  };

  TimelineLayout() = default;
  /// `groups` are the rows that are headers, ascending.
  TimelineLayout(std::size_t rows, std::vector<std::size_t> groups, Heights heights);

  int count() const { return m_count; }
  int height() const { return top(m_count); }
  int height(int row) const { return isGroup(row) ? m_heights.group : m_heights.other; }
  int groupHeight() const { return m_heights.group; }
  /// Also of the row behind the last.
  int top(int row) const;
  /// The row at that place, which lies within the height.
  int rowAt(int y) const;

  bool isGroup(int row) const;
  /// The header that a row stands under; -1: none.
  int groupOf(int row) const;
  /// The header that comes next; the row behind the last: none.
  int nextGroup(int row) const;
  /// The nearest row from that one on that is no header, forward or, with a step of -1, backward; -1: none.
  int nearestOther(int row, int step) const;

 private:
  int groupsBefore(int row) const;

  int m_count = 0;
  std::vector<int> m_groups;
  Heights m_heights;
};

}  // namespace mirvel::ui
