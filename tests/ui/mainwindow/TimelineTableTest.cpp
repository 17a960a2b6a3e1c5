#include "ui/mainwindow/TimelineTable.h"

#include <gtest/gtest.h>

#include <QAbstractListModel>
#include <QFontDatabase>
#include <QImage>
#include <QScrollBar>
#include <QTest>
#include <algorithm>
#include <optional>
#include <set>
#include <vector>

#include "ui/EventLoop.h"
#include "ui/mainwindow/TimelineDelegate.h"

namespace mirvel::ui {
namespace {

/// Every tenth row is a header. Records the rows for which data is requested.
class GroupedRows final : public QAbstractListModel {
 public:
  int count = 0;
  mutable std::set<int> asked;

  int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : count; }
  QVariant data(const QModelIndex& index, int role) const override {
    asked.insert(index.row());
    return role == Qt::DisplayRole ? QVariant(QString::number(index.row())) : QVariant();
  }
  Qt::ItemFlags flags(const QModelIndex& index) const override {
    return index.row() % 10 == 0 ? Qt::ItemIsEnabled : Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  }
  void setCount(int rows) {
    beginResetModel();
    count = rows;
    endResetModel();
  }
};

class TimelineTableTest : public testing::Test {
 protected:
  TimelineTableTest() {
    m_table.setModel(&m_rows);
    m_table.resize(300, 300);
    m_table.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_table));
  }
  ~TimelineTableTest() override { m_table.setModel(nullptr); }

  void fill(int count, std::optional<std::size_t> now = std::nullopt) {
    m_rows.setCount(count);
    std::vector<std::size_t> groups;
    for (int row = 0; row < count; row += 10) groups.push_back(static_cast<std::size_t>(row));
    m_table.setRows({.count = static_cast<std::size_t>(count), .groups = std::move(groups), .now = now});
    testdata::settle();
  }
  QRect rect(int row) { return m_table.visualRect(m_rows.index(row)); }
  int rowAt(int y) { return m_table.indexAt({5, y}).row(); }
  QScrollBar& bar() { return *m_table.verticalScrollBar(); }

  GroupedRows m_rows;
  TimelineTable m_table;
};

TEST_F(TimelineTableTest, InvisibleRowsAreNotRequested) {
  fill(720'000);
  for (const int place : {1, 400'001, 719'999}) {
    m_rows.asked.clear();
    m_table.scrollTo(m_rows.index(place));
    (void)m_table.grab();
    EXPECT_TRUE(m_rows.asked.contains(place));
    EXPECT_LE(m_rows.asked.size(), 300U / 26 + 3) << place << ": the visible ones and the pinned header";
  }
  EXPECT_EQ(bar().value(), bar().maximum());
}

TEST_F(TimelineTableTest, HeaderOfTheFirstVisibleRowIsPinned) {
  fill(40);
  const int row = rect(1).height();
  const struct {
    int offset;
    int atTop;
    const char* why;
  } rows[] = {
      {0, 0, "not scrolled"},
      {5 * row, 0, "among its rows"},
      {rect(10).top() - 1, 0, "pushed up except for one pixel"},
      {rect(10).top(), 10, "the next header"},
      {rect(20).top() + 3, 20, "below the next header"},
  };
  for (const auto& [offset, atTop, why] : rows) {
    bar().setValue(offset);
    EXPECT_EQ(rowAt(0), atTop) << why;
    EXPECT_EQ(m_rows.flags(m_table.indexAt({5, 0})) & Qt::ItemIsSelectable, Qt::NoItemFlags) << why;
  }
  bar().setValue(rect(20).top() + bar().value() + 3);
  EXPECT_EQ(rowAt(rect(21).bottom()), 21) << "below the header";
}

TEST_F(TimelineTableTest, ScrollToKeepsRowsClearOfThePinnedHeader) {
  fill(100);
  const int header = rect(0).height();
  for (const int row : {1, 99, 57, 41, 39, 30, 1}) {
    m_table.scrollTo(m_rows.index(row));
    EXPECT_GE(rect(row).top(), row % 10 == 0 ? 0 : header) << row;
    EXPECT_LE(rect(row).bottom(), m_table.viewport()->height()) << row;
    EXPECT_EQ(rowAt(rect(row).center().y()), row);
  }
  EXPECT_EQ(bar().value(), 0) << "the first row is shown with its header";
}

TEST_F(TimelineTableTest, KeyboardSkipsHeaders) {
  fill(40);
  const struct {
    Qt::Key key;
    int row;
  } steps[] = {{Qt::Key_Down, 1},  {Qt::Key_Up, 1},        {Qt::Key_End, 39},   {Qt::Key_Down, 39}, {Qt::Key_Home, 1},
               {Qt::Key_Right, 1}, {Qt::Key_PageDown, 11}, {Qt::Key_PageUp, 1}, {Qt::Key_PageUp, 1}};
  for (const auto& [key, row] : steps) {
    QTest::keyClick(&m_table, key);
    EXPECT_EQ(m_table.currentIndex().row(), row) << key;
    EXPECT_TRUE(m_table.selectionModel()->isSelected(m_rows.index(row)));
  }
  m_table.mark(9);
  QTest::keyClick(&m_table, Qt::Key_Down);
  EXPECT_EQ(m_table.currentIndex().row(), 11);
  QTest::keyClick(&m_table, Qt::Key_Up);
  EXPECT_EQ(m_table.currentIndex().row(), 9);
}

TEST_F(TimelineTableTest, NowIsInSightUntilTheUserScrolls) {
  m_table.showNow();
  const int third = m_table.viewport()->height() / 3;
  for (const std::size_t now : {20U, 50U}) {
    fill(200, now);
    EXPECT_EQ(rect(static_cast<int>(now)).top(), third) << "with a part of the past above it";
  }
  m_table.resize(300, 600);
  testdata::settle();
  EXPECT_EQ(rect(50).top(), m_table.viewport()->height() / 3);
  EXPECT_EQ(m_table.anchor()->row, 50);
  bar().triggerAction(QAbstractSlider::SliderPageStepSub);
  const int place = rect(50).top();
  m_table.resize(300, 400);
  fill(200, 50);
  EXPECT_EQ(rect(50).top(), place);
  bar().setValue(0);
  EXPECT_EQ(m_table.anchor()->row, 1) << "the first below the pinned header";
  m_table.put({30, 40});
  EXPECT_EQ(rect(30).top(), 40);
  fill(0);
  EXPECT_FALSE(m_table.anchor());
}

TEST_F(TimelineTableTest, LabelIsShownOnlyWithoutRows) {
  int labels = 0;
  m_table.emptyLabel = [&] {
    ++labels;
    return QStringLiteral("Nothing");
  };
  for (const int count : {0, 3, 0}) {
    fill(count);
    labels = 0;
    (void)m_table.grab();
    EXPECT_EQ(labels > 0, count == 0);
  }
  EXPECT_EQ(rowAt(5), -1);
}

TEST_F(TimelineTableTest, LargerFontIncreasesRowHeight) {
  fill(20);
  EXPECT_EQ(rect(0).height(), 30);
  EXPECT_EQ(rect(1).height(), 26);
  QFont font = m_table.font();
  font.setPixelSize(40);
  m_table.setFont(font);
  EXPECT_GE(rect(1).height(), QFontMetrics(font).height());
  EXPECT_GT(rect(0).height(), rect(1).height());
  EXPECT_EQ(rect(2).top(), rect(1).bottom() + 1);
}

TEST_F(TimelineTableTest, MarkNeitherAsksNorNotifies) {
  fill(5);
  int notifications = 0;
  m_table.selectionDidChange = [&](int) { ++notifications; };
  m_table.selectionMayChange = [] { return false; };
  for (const int row : {2, 4, -1, 1}) {
    m_table.mark(row);
    const QModelIndexList marked = m_table.selectionModel()->selectedRows();
    EXPECT_EQ(marked.isEmpty() ? -1 : marked.front().row(), row);
  }
  EXPECT_EQ(notifications, 0);
}

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

/// The first and the last column of pixels that contain ink.
std::pair<int, int> inked(const TabularText& text, Qt::AlignmentFlag side, const QString& time) {
  QImage image(300, 40, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  text.draw(painter, QRectF(50, 0, 200, 40), side, time);
  painter.end();
  std::pair<int, int> result{300, -1};
  for (int x = 0; x < image.width(); ++x) {
    for (int y = 0; y < image.height(); ++y) {
      if (image.pixel(x, y) != qRgb(255, 255, 255)) result = {std::min(result.first, x), std::max(result.second, x)};
    }
  }
  return result;
}

bool hasUnequalDigits(const QFont& font) {
  const QFontMetricsF metrics(font);
  return metrics.horizontalAdvance(u'1') != metrics.horizontalAdvance(u'8');
}

/// The default font, and one with digits of different widths if the machine has any.
std::vector<QFont> fonts() {
  std::vector<QFont> result{QFont()};
  for (const QString& family : QFontDatabase::families()) {
    if (result.size() == 1 && hasUnequalDigits(QFont(family, 20))) result.emplace_back(family, 20);
  }
  return result;
}

TEST(TabularText, AllDigitsHaveEqualWidth) {
  for (const QFont& font : fonts()) {
    const TabularText text(font);
    const qreal width = text.width(QStringLiteral("00:00 PM"));
    for (const char* other : {"11:11 PM", "17:41 PM", "88:88 PM"}) {
      EXPECT_DOUBLE_EQ(text.width(QString::fromLatin1(other)), width) << other << " in " << qPrintable(font.family());
    }
    EXPECT_LT(text.width(QStringLiteral("9:00 PM")), width);
  }
}

TEST(TabularText, TextIsAlignedToTheGivenSide) {
  for (const QFont& font : fonts()) {
    const TabularText text(font);
    for (const QString& time : {QStringLiteral("11:11"), QString::fromUtf8("٩:٠٠ ص")}) {
      const int width = static_cast<int>(text.width(time));
      const auto [leftBegin, leftEnd] = inked(text, Qt::AlignLeft, time);
      const auto [rightBegin, rightEnd] = inked(text, Qt::AlignRight, time);
      EXPECT_GE(leftBegin, 49);
      EXPECT_LE(leftEnd, 51 + width);
      EXPECT_GE(rightBegin, 249 - width);
      EXPECT_LE(rightEnd, 251);
    }
  }
}

}  // namespace
}  // namespace mirvel::ui
