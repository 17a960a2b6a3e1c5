#pragma once

#include <QRect>
#include <optional>
#include <utility>
#include <vector>

namespace mirvel::ui {

/// How large the parts of a grid are, in pixels.
struct GridMeasures {
  QSize cell = {1, 1};
  int header = 0;  ///< height of what stands over a group
  int margin = 0;  ///< at both sides
  int gap = 0;     ///< below a group
};

/// Where the items of a grid stand: groups one below the other, each under its header, in columns that share the width
/// evenly. Items are counted through all groups, from 0. Coordinates are those of the whole content. Every answer is
/// arithmetic over the few groups, whatever the number of items.
class GridLayout {
 public:
  /// The numbers of items in the groups, none of them 0.
  void setCounts(const std::vector<int>& counts);
  void setMeasures(const GridMeasures& measures);
  void setWidth(int width);
  /// From right to left the first column is the rightmost.
  void setDirection(Qt::LayoutDirection direction) { m_direction = direction; }

  int count() const;
  int columns() const { return m_columns; }
  int height() const;
  const GridMeasures& measures() const { return m_measures; }

  QRect item(int row) const;
  /// Where the header of a group stands while the content is scrolled to `top`: it stays in sight as long as anything
  /// of its group does.
  QRect header(int section, int top) const;
  /// The item whose cell holds the point; -1: none does.
  int itemAt(QPoint point) const;
  /// The groups, and the first and last items of each group's rows, that reach into the stretch.
  std::vector<int> sectionsIn(int top, int bottom) const;
  std::vector<std::pair<int, int>> itemsIn(int top, int bottom) const;

  /// In which column an item stands.
  int column(int row) const;
  /// The item in that column, or the last before it, of the next or the previous line of items, across groups; the item
  /// itself at the ends.
  int below(int row, int column) const;
  int above(int row, int column) const;

 private:
  struct Group {
    int first = 0;  ///< item
    int count = 0;
    int top = 0;
    int height = 0;
    int lines = 0;
  };

  void arrange();
  std::size_t groupOf(int row) const;
  int itemInLine(const Group& group, int line, int column) const;
  int firstLineTop(const Group& group) const { return group.top + m_measures.header; }

  std::vector<Group> m_groups;
  GridMeasures m_measures;
  int m_width = 0;
  int m_columns = 1;
  Qt::LayoutDirection m_direction = Qt::LeftToRight;
};

}  // namespace mirvel::ui
