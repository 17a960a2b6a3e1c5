#include "ui/mainwindow/ListTable.h"

#include <gtest/gtest.h>

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QScrollBar>
#include <QTest>
#include <set>

#include "ui/EventLoop.h"

namespace mirvel::ui {
namespace {

/// Rows of equal text in all columns of the list; records the rows for which data is requested.
class Rows final : public QAbstractTableModel {
 public:
  int count = 0;
  QString text = QStringLiteral("text");
  mutable std::set<int> asked;

  void setCount(int rows) {
    beginResetModel();
    count = rows;
    endResetModel();
  }
  int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : count; }
  int columnCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(allListColumns.size());
  }
  QVariant data(const QModelIndex& index, int role) const override {
    asked.insert(index.row());
    if (role != Qt::DisplayRole) return {};
    return index.row() == count / 2 ? QVariant(text) : QVariant(QStringLiteral("x"));
  }
};

class ListTableTest : public testing::Test {
 protected:
  ListTableTest() {
    m_table.setModel(&m_rows);
    m_table.resize(600, 300);
    m_table.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_table));
  }
  ~ListTableTest() override { m_table.setModel(nullptr); }

  int widestNeed(int column) {
    int widest = m_table.header()->sectionSizeHint(column);
    for (int row = 0; row < m_rows.count; ++row) {
      widest = std::max(widest, m_table.sizeHintForIndex(m_rows.index(row, column)).width());
    }
    return widest;
  }

  Rows m_rows;
  ListTable m_table;
};

TEST_F(ListTableTest, RightSizingFitsTheWidestCellOfThatColumnOnly) {
  m_rows.setCount(300);  // the widest row isn't visible
  for (const int length : {1, 10, 200}) {
    m_rows.text = QString(length, QLatin1Char('m'));
    m_table.header()->resizeSection(0, 77);
    m_table.header()->resizeSection(1, 700);
    m_table.rightSize(1);
    EXPECT_GE(m_table.columnWidth(1), widestNeed(1)) << length;
    EXPECT_LT(m_table.columnWidth(1), widestNeed(1) + 30) << length << ": and no wider";
    EXPECT_EQ(m_table.columnWidth(0), 77);
  }
  m_table.setColumnHidden(2, true);
  m_table.rightSizeAll();
  EXPECT_GE(m_table.columnWidth(0), widestNeed(0));
  EXPECT_TRUE(m_table.isColumnHidden(2));
}

TEST_F(ListTableTest, InvisibleRowsAreNotRequested) {
  m_rows.setCount(10'000);
  testdata::settle();
  constexpr std::size_t fitting = 300 / 10;  // assuming rows of at least ten pixels
  for (const int place : {0, 5'000, 9'999}) {
    m_rows.asked.clear();
    m_table.scrollTo(m_rows.index(place, 0));
    testdata::settle();
    (void)m_table.grab();
    EXPECT_TRUE(m_rows.asked.contains(place));
    EXPECT_LE(m_rows.asked.size(), fitting + 1) << place << ": the visible rows, and the first for the common height";
  }
  EXPECT_EQ(m_table.verticalScrollBar()->value(), m_table.verticalScrollBar()->maximum());
}

TEST_F(ListTableTest, MarkNeitherAsksNorNotifies) {
  m_rows.setCount(3);
  int notifications = 0;
  m_table.selectionDidChange = [&](int) { ++notifications; };
  m_table.selectionMayChange = [] { return false; };
  for (const int row : {2, 0, -1, 1}) {
    m_table.mark(row);
    const QModelIndexList marked = m_table.selectionModel()->selectedRows();
    EXPECT_EQ(marked.isEmpty() ? -1 : marked.front().row(), row);
    EXPECT_EQ(m_table.currentIndex().row(), row);
  }
  m_rows.setCount(2);
  EXPECT_TRUE(m_table.selectionModel()->selectedRows().isEmpty()) << "a reset leaves no row marked";
  EXPECT_EQ(notifications, 0);
}

}  // namespace
}  // namespace mirvel::ui
