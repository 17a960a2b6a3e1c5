#include "ui/mainwindow/GridLayout.h"

#include <gmock/gmock.h>

#include <QGuiApplication>

#include "ui/mainwindow/GridItemDelegate.h"

namespace mirvel::ui {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr GridMeasures measures{.cell = {100, 80}, .header = 20, .margin = 10, .gap = 5};

/// Groups of 7, 2 and 5 items in three columns of 110 pixels.
GridLayout threeGroups() {
  GridLayout layout;
  layout.setMeasures(measures);
  layout.setWidth(350);
  layout.setCounts({7, 2, 5});
  return layout;
}

constexpr int secondTop = 20 + 3 * 80 + 5;
constexpr int thirdTop = secondTop + 20 + 80 + 5;

TEST(GridLayoutTest, ColumnsFillTheWidthAndThereIsAtLeastOne) {
  const struct {
    int width;
    int columns;
    int lines;  // lines of the group with seven items
  } rows[] = {{0, 1, 7}, {119, 1, 7}, {219, 1, 7}, {220, 2, 4}, {319, 2, 4}, {320, 3, 3}, {719, 6, 2}, {720, 7, 1}};
  for (const auto& row : rows) {
    GridLayout layout = threeGroups();
    layout.setCounts({7});
    layout.setWidth(row.width);
    EXPECT_EQ(layout.columns(), row.columns) << row.width;
    EXPECT_EQ(layout.height(), 20 + row.lines * 80 + 5) << row.width;
    const QRect last = layout.item(row.columns - 1);
    EXPECT_EQ(last.size(), measures.cell);
    EXPECT_LE(last.right(), std::max(row.width, 120) - measures.margin) << row.width;
  }
}

TEST(GridLayoutTest, ItemsArePlacedBelowTheirHeader) {
  GridLayout layout = threeGroups();
  const struct {
    int row;
    QPoint place;
    int placeFromRight;
  } rows[] = {{0, {15, 20}, 235},
              {2, {235, 20}, 15},
              {3, {15, 100}, 235},
              {6, {15, 180}, 235},
              {7, {15, secondTop + 20}, 235},
              {8, {125, secondTop + 20}, 125},
              {13, {125, thirdTop + 100}, 125}};
  for (const auto& row : rows) {
    layout.setDirection(Qt::LeftToRight);
    EXPECT_EQ(layout.item(row.row), QRect(row.place, measures.cell)) << row.row;
    EXPECT_EQ(layout.itemAt(layout.item(row.row).center()), row.row);
    layout.setDirection(Qt::RightToLeft);
    EXPECT_EQ(layout.item(row.row).left(), row.placeFromRight) << row.row;
    EXPECT_EQ(layout.itemAt(layout.item(row.row).center()), row.row);
  }
  EXPECT_TRUE(layout.item(-1).isNull());
  EXPECT_TRUE(layout.item(14).isNull());
  EXPECT_EQ(layout.height(), thirdTop + 20 + 160 + 5);
}

TEST(GridLayoutTest, NoItemIsHitBesideTheCells) {
  const GridLayout layout = threeGroups();
  const QPoint points[] = {{-5, 50},  {5, 50},    {120, 50}, {345, 50}, {60, 10},
                           {60, 262}, {170, 200}, {60, 900}, {60, -1}};
  for (const QPoint point : points) EXPECT_EQ(layout.itemAt(point), -1) << point.x() << ", " << point.y();
}

TEST(GridLayoutTest, HeaderStaysVisibleWithItsGroup) {
  const GridLayout layout = threeGroups();
  const struct {
    int section;
    int top;
    int header;
  } rows[] = {{0, 0, 0},
              {0, 100, 100},
              {0, secondTop - 20, secondTop - 20},
              {0, secondTop - 10, secondTop - 20},  // pushed up by the next header
              {1, 100, secondTop},
              {1, secondTop + 3, secondTop + 3},
              {2, 0, thirdTop}};
  for (const auto& row : rows) {
    EXPECT_EQ(layout.header(row.section, row.top), QRect(0, row.header, 350, 20)) << row.section << " at " << row.top;
  }
}

TEST(GridLayoutTest, RangeQueriesReturnOverlappingRowsOnly) {
  const GridLayout layout = threeGroups();
  EXPECT_THAT(layout.itemsIn(0, 20), IsEmpty());
  EXPECT_THAT(layout.itemsIn(0, 21), ElementsAre(Pair(0, 2)));
  EXPECT_THAT(layout.itemsIn(99, 101), ElementsAre(Pair(0, 5)));
  EXPECT_THAT(layout.itemsIn(100, 101), ElementsAre(Pair(3, 5)));
  EXPECT_THAT(layout.itemsIn(260, secondTop + 20), IsEmpty());
  EXPECT_THAT(layout.itemsIn(190, thirdTop + 25), ElementsAre(Pair(6, 6), Pair(7, 8), Pair(9, 11)));
  EXPECT_THAT(layout.itemsIn(0, 10'000), ElementsAre(Pair(0, 6), Pair(7, 8), Pair(9, 13)));
  EXPECT_THAT(layout.sectionsIn(0, secondTop), ElementsAre(0));
  EXPECT_THAT(layout.sectionsIn(secondTop - 1, secondTop + 1), ElementsAre(0, 1));
  EXPECT_THAT(layout.sectionsIn(10'000, 20'000), IsEmpty());
}

TEST(GridLayoutTest, UpAndDownCrossGroups) {
  const GridLayout layout = threeGroups();
  const struct {
    int row;
    int column;
    int above;
    int below;
  } rows[] = {{0, 0, 0, 3},  {2, 2, 2, 5}, {5, 2, 2, 6},  {6, 2, 5, 8},   {6, 0, 3, 7},
              {8, 2, 6, 11}, {7, 0, 6, 9}, {9, 0, 7, 12}, {11, 2, 8, 13}, {13, 2, 11, 13}};
  for (const auto& row : rows) {
    EXPECT_EQ(layout.above(row.row, row.column), row.above) << row.row << " in column " << row.column;
    EXPECT_EQ(layout.below(row.row, row.column), row.below) << row.row << " in column " << row.column;
  }
}

TEST(NameLinesTest, NamesBreakAtSeparatorsAndAreElidedInTheMiddle) {
  const QFontMetrics metrics{QFont()};
  const struct {
    const char* name;
    const char* asWideAs;  // the width available
    const char* first;
    const char* second;  // a "*" marks the place of the ellipsis
  } rows[] = {
      {"", "mmmm", "", nullptr},
      {"short", "mmmmmm", "short", nullptr},
      {"org.example.backup", "org.example.", "org.example.", "backup"},
      {"org.example.backup", "org.example.b", "org.example.", "backup"},
      {"two words", "two wo", "two", "words"},
      {"a.longwordlongword", "longwordlo", "a.longwo", "rdlongword"},
      {"wwwwwwwwwwwwwwwwwwww", "wwwww", "wwwww", "w*w"},
      {"org.example.one.two.three.backup", "org.example.", "org.example.", "*p"},
  };
  for (const auto& row : rows) {
    const QString name = QString::fromLatin1(row.name);
    const int width = metrics.horizontalAdvance(QString::fromLatin1(row.asWideAs)) + 1;
    const NameLines lines = nameLines(name, metrics, width);
    ASSERT_EQ(lines.lines.size(), row.second ? 2 : 1) << row.name;
    for (const QString& line : lines.lines) EXPECT_LE(metrics.horizontalAdvance(line), width) << row.name;
    if (!row.second) {
      EXPECT_EQ(lines.lines[0], QString::fromLatin1(row.first));
      continue;
    }
    const QStringList kept = QString::fromLatin1(row.second).split(QLatin1Char('*'));
    EXPECT_EQ(lines.isElided, kept.size() == 2) << row.name;
    if (lines.isElided) {
      EXPECT_TRUE(lines.lines[1].startsWith(kept[0]) && lines.lines[1].endsWith(kept[1])) << row.name;
      EXPECT_TRUE(lines.lines[1].contains(QChar(0x2026))) << row.name;
    } else {
      EXPECT_EQ(lines.lines.join(name.contains(QLatin1Char(' ')) ? QStringLiteral(" ") : QString()), name);
    }
  }
}

TEST(NameLinesTest, LinesBreakAtGraphemeBoundaries) {
  const QFontMetrics metrics{QFont()};
  const QString family = QString::fromUtf8("\U0001F468\u200D\U0001F469\u200D\U0001F467");
  const NameLines lines = nameLines(family + family + family, metrics, metrics.horizontalAdvance(family) + 1);
  EXPECT_EQ(lines.lines[0], family);
  EXPECT_EQ(nameLines(family, metrics, 1).lines[0], family) << "one stays, however little room there is";
}

}  // namespace
}  // namespace mirvel::ui
