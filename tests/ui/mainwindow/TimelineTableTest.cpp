#include "ui/mainwindow/TimelineTable.h"

#include <gtest/gtest.h>

#include <QAbstractListModel>
#include <QScrollBar>
#include <QTest>
#include <set>

#include "ui/EventLoop.h"

namespace mirvel::ui {
namespace {

/// Every tenth row is a header. Records the rows for which data is requested.
class Rows final : public QAbstractListModel {
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

  void fill(int count) {
    m_rows.setCount(count);
    std::vector<std::size_t> groups;
    for (int row = 0; row < count; row += 10) groups.push_back(static_cast<std::size_t>(row));
    m_table.setRows(static_cast<std::size_t>(count), std::move(groups));
    testdata::settle();
  }
  QRect rect(int row) { return m_table.visualRect(m_rows.index(row)); }
  int rowAt(int y) { return m_table.indexAt({5, y}).row(); }
  QScrollBar& bar() { return *m_table.verticalScrollBar(); }

  Rows m_rows;
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

}  // namespace
}  // namespace mirvel::ui
