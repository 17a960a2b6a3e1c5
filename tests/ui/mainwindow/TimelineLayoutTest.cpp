#include "ui/mainwindow/TimelineLayout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace mirvel::ui {
namespace {

TEST(TimelineLayout, PositionsEqualThoseOfALinearWalk) {
  const std::vector<std::vector<std::size_t>> headers = {{}, {0}, {0, 2, 3, 9}, {4, 5}, {0, 1, 2}};
  for (const auto& groups : headers) {
    const TimelineLayout layout(10, groups, {.group = 30, .other = 26});
    int top = 0, group = -1;
    for (int row = 0; row < 10; ++row) {
      const bool isGroup = std::find(groups.begin(), groups.end(), static_cast<std::size_t>(row)) != groups.end();
      if (isGroup) group = row;
      EXPECT_EQ(layout.isGroup(row), isGroup);
      EXPECT_EQ(layout.top(row), top);
      EXPECT_EQ(layout.groupOf(row), group);
      top += isGroup ? 30 : 26;
      for (const int y : {layout.top(row), top - 1}) EXPECT_EQ(layout.rowAt(y), row) << y;
    }
    EXPECT_EQ(layout.height(), top);
  }
}

TEST(TimelineLayout, HeadersAreSkipped) {
  const TimelineLayout layout(6, {0, 3, 5}, {});
  const struct {
    int row, step, nearest;
  } rows[] = {{0, 1, 1},  {0, -1, -1}, {2, 1, 2},  {3, 1, 4},   {3, -1, 2},
              {5, 1, -1}, {5, -1, 4},  {6, 1, -1}, {-1, -1, -1}};
  for (const auto& row : rows) EXPECT_EQ(layout.nearestOther(row.row, row.step), row.nearest) << row.row;
  EXPECT_EQ(layout.nextGroup(0), 3);
  EXPECT_EQ(layout.nextGroup(4), 5);
  EXPECT_EQ(layout.nextGroup(5), 6);
}

}  // namespace
}  // namespace mirvel::ui
