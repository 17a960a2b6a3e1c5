#include "ui/mainwindow/GridModeView.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QHelpEvent>
#include <QIdentityProxyModel>
#include <QMimeData>
#include <QScrollBar>
#include <QToolTip>
#include <QUrl>
#include <functional>
#include <set>

#include "ui/mainwindow/ModeViewFixture.h"

namespace mirvel::ui {
namespace {

using testing::ElementsAre;
using Names = std::vector<std::string>;

/// Records the rows for which data is requested.
class RequestedRows final : public QIdentityProxyModel {
 public:
  mutable std::set<int> rows;

  QVariant data(const QModelIndex& index, int role) const override {
    rows.insert(index.row());
    return QIdentityProxyModel::data(index, role);
  }
};

/// Jobs "job0" to "job9999" of two kinds, without files on disk.
Jobs tenThousandJobs() {
  Jobs jobs;
  for (int i = 0; i < 10'000; ++i) {
    const std::string name = "job" + std::to_string(i);
    jobs.push_back(std::make_shared<Job>(i % 3 == 0 ? Kind::userAgent : Kind::localDaemon, name, "", name,
                                         URL::file("/jobs/" + name + ".plist")));
  }
  return jobs;
}

class GridModeViewTest : public ModeViewFixture<GridModeView> {
 protected:
  GridView& grid() { return view().grid(); }
  /// Three columns:
  ///
  /// a1 a2 a3 / a4 a5 a6 / a7 - b1 b2 - c1 c2 c3 / c4 c5
  void showThreeColumns() {
    show({"a1", "a2", "a3", "a4", "a5", "a6", "a7", "b1", "b2", "c1", "c2", "c3", "c4", "c5"});
    fitColumns(3);
  }
  void fitColumns(int columns, int height = 2000) {
    const GridMeasures& measures = grid().grid().measures();
    const int bar = grid().verticalScrollBar()->sizeHint().width();
    view().resize(columns * measures.cell.width() + 2 * measures.margin + bar, height);
    testdata::settle();
    ASSERT_EQ(grid().grid().columns(), columns);
  }
  Names manyNames(int count) const {
    Names names;
    for (int i = 0; i < count; ++i) names.push_back("a" + std::to_string(1000 + i));
    return names;
  }
  QModelIndex named(const std::string& name) {
    for (int row = 0; row < grid().model()->rowCount(); ++row) {
      const QModelIndex index = grid().model()->index(row, 0);
      if (index.data().toString() == qt(name)) return index;
    }
    ADD_FAILURE() << "no item " << name;
    return {};
  }
  void key(int key) { QTest::keyClick(&grid(), static_cast<Qt::Key>(key)); }
  using ModeViewFixture::click;
  void click(const std::string& name, Qt::KeyboardModifiers modifiers = {}) { click(grid(), named(name), modifiers); }
};

TEST_F(GridModeViewTest, KeyboardAndMouseMoveThroughLinesAndGroups) {
  showThreeColumns();
  const struct {
    const char* act;
    std::function<void()> does;
    const char* selected;
  } rows[] = {
      {"down, with nothing marked", [&] { key(Qt::Key_Down); }, "a1"},
      {"left, at the first", [&] { key(Qt::Key_Left); }, "a1"},
      {"right", [&] { key(Qt::Key_Right); }, "a2"},
      {"right", [&] { key(Qt::Key_Right); }, "a3"},
      {"right, at the end of a line", [&] { key(Qt::Key_Right); }, "a4"},
      {"left, at its start", [&] { key(Qt::Key_Left); }, "a3"},
      {"down", [&] { key(Qt::Key_Down); }, "a6"},
      {"down, to a short line", [&] { key(Qt::Key_Down); }, "a7"},
      {"down, to the next group", [&] { key(Qt::Key_Down); }, "b2"},
      {"down, in the column of the start", [&] { key(Qt::Key_Down); }, "c3"},
      {"down", [&] { key(Qt::Key_Down); }, "c5"},
      {"down, at the end", [&] { key(Qt::Key_Down); }, "c5"},
      {"up", [&] { key(Qt::Key_Up); }, "c3"},
      {"left", [&] { key(Qt::Key_Left); }, "c2"},
      {"up", [&] { key(Qt::Key_Up); }, "b2"},
      {"up", [&] { key(Qt::Key_Up); }, "a7"},
      {"up", [&] { key(Qt::Key_Up); }, "a5"},
      {"end", [&] { key(Qt::Key_End); }, "c5"},
      {"right, at the end", [&] { key(Qt::Key_Right); }, "c5"},
      {"page up, to the first line", [&] { key(Qt::Key_PageUp); }, "a2"},
      {"page down", [&] { key(Qt::Key_PageDown); }, "c5"},
      {"home", [&] { key(Qt::Key_Home); }, "a1"},
      {"letters", [&] { QTest::keyClicks(&grid(), QStringLiteral("b2")); }, "b2"},
      {"click", [&] { click("c4"); }, "c4"},
      {"click with control", [&] { click("c4", Qt::ControlModifier); }, "c4"},
      {"click with shift", [&] { click("a6", Qt::ShiftModifier); }, "a6"},
      {"down, after a click", [&] { key(Qt::Key_Down); }, "a7"},
      {"click beside the items", [&] { QTest::mouseClick(grid().viewport(), Qt::LeftButton, {}, QPoint(300, 1900)); },
       "a7"},
      {"the other button",
       [&] { QTest::mouseClick(grid().viewport(), Qt::RightButton, {}, grid().visualRect(named("a1")).center()); },
       "a7"},
  };
  for (const auto& row : rows) {
    row.does();
    EXPECT_EQ(markedName(grid()), row.selected) << row.act;
    EXPECT_EQ(selectedJob(), row.selected) << row.act;
  }
}

TEST_F(GridModeViewTest, NextItemIsOnTheLeftInRightToLeftLayout) {
  showThreeColumns();
  view().setLayoutDirection(Qt::RightToLeft);
  testdata::settle();
  EXPECT_GT(grid().visualRect(named("a1")).left(), grid().visualRect(named("a2")).left());
  click("a1");
  key(Qt::Key_Left);
  EXPECT_EQ(selectedJob(), "a2");
  key(Qt::Key_Down);
  EXPECT_EQ(selectedJob(), "a5");
  key(Qt::Key_Right);
  EXPECT_EQ(selectedJob(), "a4");
}

TEST_F(GridModeViewTest, UnsavedChangesAskAtEveryClick) {
  showThreeColumns();
  click("a1");
  program().editing.setUnsavedChanges(true);
  const std::pair<const char*, std::size_t> clicks[] = {{"b1", 1}, {"b2", 2}, {"b2", 3}, {"a1", 4}, {"b1", 5}};
  for (const auto& [name, questions] : clicks) {
    click(name);
    EXPECT_EQ(interface.sheets.size(), questions) << name;
    EXPECT_EQ(selectedJob(), "a1") << name;
    EXPECT_EQ(markedName(grid()), name) << "the selection in the view isn't restored";
  }
  program().editing.setUnsavedChanges(false);
  click("b1");
  EXPECT_EQ(selectedJob(), "b1") << "although it was selected before";
  EXPECT_EQ(interface.sheets.size(), 5U);
}

TEST_F(GridModeViewTest, ReloadKeepsScrollPositionAndSelection) {
  show(manyNames(200));
  fitColumns(3, 400);
  grid().verticalScrollBar()->setValue(1000);
  click(grid(), grid().indexAt(QPoint(view().width() / 2, 200)));
  const int place = grid().verticalScrollBar()->value();
  const std::string selected = selectedJob();
  ASSERT_GE(place, 900);
  for (const char* change : {"nothing", "b1"}) {
    if (*change == 'b') writeJob(Kind::localAgent, change);
    scan();
    testdata::settle();
    EXPECT_EQ(grid().verticalScrollBar()->value(), place) << change;
    EXPECT_EQ(markedName(grid()), selected) << change;
    EXPECT_EQ(selectedJob(), selected) << change;
  }
  EXPECT_EQ(grid().model()->rowCount(), 201);
}

TEST_F(GridModeViewTest, ResizingKeepsTheSelectedItemInPlace) {
  show(manyNames(200));
  fitColumns(3, 500);
  program().currentMode.view()->select(jobNamed("a1100")->url);
  grid().verticalScrollBar()->setValue(grid().verticalScrollBar()->value() + 100);
  const int place = grid().visualRect(named("a1100")).top();
  ASSERT_GT(place, 0);
  for (const int columns : {5, 2, 1, 3}) {
    fitColumns(columns, 500);
    EXPECT_EQ(grid().visualRect(named("a1100")).top(), place) << columns;
  }
}

TEST_F(GridModeViewTest, ScrollToKeepsItemsClearOfThePinnedHeader) {
  show(manyNames(100));
  fitColumns(3, 500);
  const int header = grid().grid().measures().header;
  for (const char* name : {"a1099", "a1050", "a1000", "a1060", "a1099"}) {
    program().currentMode.view()->select(jobNamed(name));
    const QRect item = grid().visualRect(named(name));
    EXPECT_GE(item.top(), header) << name;
    EXPECT_LT(item.bottom(), grid().viewport()->height()) << name;
    EXPECT_FALSE(grid().indexAt(QPoint(item.center().x(), header / 2)).isValid()) << "the header covers items";
  }
}

TEST_F(GridModeViewTest, ContextMenuAndDragBelongToTheItem) {
  show({"a & b", "b1"});
  const std::string reveal = foundation.localize.revealInFinder();
  QMenu* menu = menuAt(grid(), grid().visualRect(named("a & b")).center());
  ASSERT_NE(menu, nullptr);
  EXPECT_THAT(titles(*menu), ElementsAre("a && b", "", "Run Now", "Stop", "", reveal, "Delete"));
  choose(*menu, reveal);
  EXPECT_THAT(workspace.calls, ElementsAre("reveal " + path(Kind::userAgent, "a & b.plist").string()));
  menu->close();
  EXPECT_EQ(selectedJob(), "") << "a menu doesn't select";
  EXPECT_EQ(menuAt(grid(), QPoint(20, 5)), nullptr) << "a header";

  const std::unique_ptr<QMimeData> data(grid().model()->mimeData({named("b1")}));
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(data->urls(), QList{QUrl::fromLocalFile(qt(path(Kind::localAgent, "b1.plist").string()))});
  loginItems.ownItems = {{"own", "/own", {}, {}}};
  scan();
  EXPECT_EQ(grid().model()->mimeData({named("own")}), nullptr);
}

TEST_F(GridModeViewTest, AssistiveProgramsReadAndPressItems) {
  QAccessible::setActive(true);
  loginItems.ownItems = {{"own", "/own", {}, {}}};
  writeJob(Kind::userAgent, "off", {{"Disabled", true}});
  show({"b1"});
  QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&grid());
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->role(), QAccessible::List);
  EXPECT_EQ(list->text(QAccessible::Name), QStringLiteral("Jobs"));
  const std::pair<const char*, const char*> items[] = {{"off", "Ada Lovelace, Disabled"},
                                                       {"b1", "Everyone"},
                                                       {"own", "Login Items \u2013 System Settings, Not editable"}};
  ASSERT_EQ(list->childCount(), 3);
  for (int i = 0; i < 3; ++i) {
    QAccessibleInterface* item = list->child(i);
    EXPECT_EQ(item->role(), QAccessible::ListItem);
    EXPECT_EQ(utf8(item->text(QAccessible::Name)), items[i].first);
    EXPECT_EQ(utf8(item->text(QAccessible::Description)), items[i].second);
    EXPECT_EQ(list->indexOfChild(item), i);
    EXPECT_EQ(item->parent(), list);
    EXPECT_EQ(list->childAt(item->rect().center().x(), item->rect().center().y()), item);
  }
  QAccessibleInterface* pressed = list->child(1);
  pressed->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(selectedJob(), "b1");
  EXPECT_TRUE(pressed->state().selected);
  EXPECT_EQ(list->focusChild(), pressed);
  EXPECT_EQ(list->child(3), nullptr);
  program().currentMode.view()->update({});
  EXPECT_FALSE(pressed->isValid());
  EXPECT_EQ(list->childCount(), 0);
  QAccessible::setActive(false);
}

TEST_F(GridModeViewTest, ToolTipShowsTheFullNameLiterally) {
  const std::string name = "a R&D " + std::string(100, 'w');
  show({name});
  const QPoint place = grid().visualRect(grid().model()->index(0, 0)).center();
  QHelpEvent help(QEvent::ToolTip, place, grid().viewport()->mapToGlobal(place));
  QCoreApplication::sendEvent(grid().viewport(), &help);
  EXPECT_EQ(utf8(QToolTip::text()), name);
  QToolTip::hideText();
}

TEST_F(GridModeViewTest, EmptyViewShowsTheReason) {
  (void)view();
  int asked = 0;
  const auto label = grid().emptyLabel;
  grid().emptyLabel = [&] { return ++asked, label(); };
  (void)view().grab();
  EXPECT_GT(asked, 0);
  show({"a1"});
  asked = 0;
  (void)view().grab();
  EXPECT_EQ(asked, 0);
}

TEST_F(GridModeViewTest, OnlyVisibleItemsOfTenThousandAreRequested) {
  view().mode().update(tenThousandJobs());
  RequestedRows asked;
  asked.setSourceModel(grid().model());
  GridView second;
  second.setGroups(grid().groups());
  second.setModel(&asked);
  second.resize(600, 400);
  second.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&second));
  for (const int row : {0, 3333, 5000, 9999}) {
    asked.rows.clear();
    second.scrollTo(asked.index(row, 0));
    testdata::settle();
    (void)second.grab();
    EXPECT_TRUE(asked.rows.contains(row)) << row;
    EXPECT_LE(asked.rows.size(), 80U) << row;
  }
  second.setModel(nullptr);
}

}  // namespace
}  // namespace mirvel::ui
