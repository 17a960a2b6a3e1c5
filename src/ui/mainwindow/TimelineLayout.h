#pragma once

#include <cstddef>
#include <vector>

namespace mirvel::ui {

/// The vertical geometry of a timeline's rows, in pixels from the top of the first. Headers are higher than other rows.
/// Queries search the headers only, which are few, and never walk through the rows.
class TimelineLayout {
 public:
  struct Heights {
    int group = 1;
    int other = 1;
  };

  TimelineLayout() = default;
  /// `groups` holds the indices of the header rows in ascending order.
  TimelineLayout(std::size_t rows, std::vector<std::size_t> groups, Heights heights);

  void setHeights(Heights heights) { m_heights = heights; }

  int count() const { return m_count; }
  int height() const { return top(m_count); }
  int height(int row) const { return isGroup(row) ? m_heights.group : m_heights.other; }
  int groupHeight() const { return m_heights.group; }
  /// Also valid for the index after the last row.
  int top(int row) const;
  /// The row at `y`, which must be within the total height.
  int rowAt(int y) const;

  bool isGroup(int row) const;
  /// The header above a row, or the row itself if it is one; -1 if there is none.
  int groupOf(int row) const;
  /// The next header after a row, or the number of rows if there is none.
  int nextGroup(int row) const;
  /// The nearest row from `row` on that isn't a header, searching forward with a `step` of 1 and backward with -1; -1
  /// if there is none.
  int nearestOther(int row, int step) const;

 private:
  int groupsBefore(int row) const;

  int m_count = 0;
  std::vector<int> m_groups;
  Heights m_heights;
};

}  // namespace mirvel::ui
