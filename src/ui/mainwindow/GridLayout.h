#pragma once

#include <QRect>
#include <utility>
#include <vector>

namespace mirvel::ui {

/// The dimensions of a grid, in pixels.
struct GridMeasures {
  QSize cell = {1, 1};
  int header = 0;  ///< height of a group header
  int margin = 0;  ///< on the left and on the right
  int gap = 0;     ///< below each group
};

/// The geometry of a grid: groups from top to bottom, each under its header, with columns that share the width evenly.
/// Items are numbered from 0 across all groups. Coordinates are relative to the top left of the content. Every query is
/// computed from the list of groups, so its cost doesn't depend on the number of items.
class GridLayout {
 public:
  /// Sets the number of items of each group; none may be 0.
  void setCounts(const std::vector<int>& counts);
  void setMeasures(const GridMeasures& measures);
  void setWidth(int width);
  /// With `Qt::RightToLeft` the first column is the rightmost.
  void setDirection(Qt::LayoutDirection direction) { m_direction = direction; }

  int count() const;
  int columns() const { return m_columns; }
  int height() const;
  const GridMeasures& measures() const { return m_measures; }

  QRect item(int row) const;
  /// The rectangle of a group's header when the content is scrolled to `top`. The header stays visible while any part
  /// of its group is.
  QRect header(int section, int top) const;
  /// The item whose cell contains the point, or -1.
  int itemAt(QPoint point) const;
  /// The groups that overlap the vertical range, and for each of these groups the first and the last item in it.
  std::vector<int> sectionsIn(int top, int bottom) const;
  std::vector<std::pair<int, int>> itemsIn(int top, int bottom) const;

  /// The column of an item.
  int column(int row) const;
  /// The item in the next or the previous line, in the given column or, if that line is shorter, its last item. Crosses
  /// group borders; at either end the result is `row` itself.
  int below(int row, int column) const;
  int above(int row, int column) const;

 private:
  struct Group {
    int first = 0;  ///< its first item
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
