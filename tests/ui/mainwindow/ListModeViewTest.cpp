#include <gmock/gmock.h>

#include <QMimeData>
#include <QScrollBar>
#include <QUrl>
#include <algorithm>
#include <functional>

#include "core/mainwindow/WindowTexts.h"
#include "ui/mainwindow/WindowFixture.h"

namespace mirvel::ui {
namespace {

using List = ListColumn;
using testing::ElementsAre;
using testing::IsEmpty;
using Names = std::vector<std::string>;

class ListModeViewTest : public WindowFixture {
 protected:
  void expectSelected(const std::string& name, const std::string& why) {
    EXPECT_EQ(markedJob(table()), name) << why;
    EXPECT_EQ(shownJob(window()), name) << why;
    const auto job = program().selection.job();
    EXPECT_EQ(job ? job->name : "", name) << why;
  }
};

TEST_F(ListModeViewTest, MouseAndKeyboardSelectAndShowTheJob) {
  fill({"alpha", "beta", "gamma", "golf"});
  expectSelected("", "at first");
  const struct {
    const char* act;
    std::function<void()> does;
    const char* selected;
  } rows[] = {
      {"down, with nothing marked", [&] { QTest::keyClick(&table(), Qt::Key_Down); }, "alpha"},
      {"click", [&] { click(1); }, "beta"},
      {"down", [&] { QTest::keyClick(&table(), Qt::Key_Down); }, "gamma"},
      {"up", [&] { QTest::keyClick(&table(), Qt::Key_Up); }, "beta"},
      {"right", [&] { QTest::keyClick(&table(), Qt::Key_Right); }, "beta"},
      {"end", [&] { QTest::keyClick(&table(), Qt::Key_End); }, "golf"},
      {"home", [&] { QTest::keyClick(&table(), Qt::Key_Home); }, "alpha"},
      {"letters", [&] { QTest::keyClicks(&table(), QStringLiteral("go")); }, "golf"},
      {"click with control", [&] { click(2, Qt::ControlModifier); }, "gamma"},
      {"again", [&] { click(2, Qt::ControlModifier); }, "gamma"},
      {"space with control", [&] { QTest::keyClick(&table(), Qt::Key_Space, Qt::ControlModifier); }, "gamma"},
      {"click with shift", [&] { click(0, Qt::ShiftModifier); }, "alpha"},
      {"click below the rows",
       [&] { QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, QPoint(50, cell(3).center().y() + 60)); },
       "alpha"},
      {"right click", [&] { QTest::mouseClick(table().viewport(), Qt::RightButton, {}, cell(1).center()); }, "alpha"},
  };
  for (const auto& row : rows) {
    row.does();
    expectSelected(row.selected, row.act);
  }
  EXPECT_EQ(table().currentIndex().row(), 0);
}

TEST_F(ListModeViewTest, UnsavedChangesKeepTheSelectionAndAskOnce) {
  fill({"alpha", "beta", "gamma"});
  click(1);
  const std::pair<const char*, std::function<void()>> acts[] = {
      {"click", [&] { click(0); }},
      {"click with control", [&] { click(1, Qt::ControlModifier); }},
      {"down", [&] { QTest::keyClick(&table(), Qt::Key_Down); }},
      {"home", [&] { QTest::keyClick(&table(), Qt::Key_Home); }},
      {"letter", [&] { QTest::keyClick(&table(), Qt::Key_G); }},
  };
  program().editing.setUnsavedChanges(true);
  for (const auto& [act, does] : acts) {
    does();
    expectSelected("beta", act);
    EXPECT_EQ(table().currentIndex().row(), 1) << act;
    EXPECT_EQ(interface.sheets.size(), 1U) << act;
  }
  program().editing.setUnsavedChanges(false);
  click(0);
  expectSelected("alpha", "saved");
}

TEST_F(ListModeViewTest, HeaderTogglesTheSortOrderAndKeepsTheSelection) {
  fill({"b", "c", "a"});
  writeJob(Kind::userAgent, "d", {{"Program", "/a"}});
  scan();
  click(2);
  const struct {
    List column;
    Names order;
  } rows[] = {
      {List::Name, {"a", "b", "c", "d"}}, {List::Name, {"d", "c", "b", "a"}}, {List::Name, {"a", "b", "c", "d"}},
      {List::Run, {"d", "a", "b", "c"}},  {List::Run, {"c", "b", "a", "d"}},
  };
  for (const auto& row : rows) {
    clickHeader(row.column);
    EXPECT_EQ(texts(table()), row.order);
    expectSelected("c", "sorted");
  }
  scan();
  EXPECT_EQ(texts(table()), rows[4].order) << "a scan keeps the order";
}

TEST_F(ListModeViewTest, ContextMenuBelongsToTheRowsJob) {
  fill({"alpha", "beta & co", "gamma"});
  click(0);
  const std::string reveal = foundation.localize.revealInFinder();
  QMenu* menu = menuAt(table(), cell(1).center());
  ASSERT_NE(menu, nullptr);
  EXPECT_THAT(titles(*menu), ElementsAre("beta && co", "", "Run Now", "Stop", "Show Log", "", reveal, "Delete"));
  EXPECT_FALSE(menu->actions()[0]->isEnabled());
  choose(*menu, reveal);
  EXPECT_THAT(workspace.calls, ElementsAre("reveal " + path(Kind::userAgent, "beta & co.plist").string()));
  menu->close();
  testdata::settle();
  expectSelected("alpha", "a menu selects nothing");

  EXPECT_EQ(menuAt(table(), cell(2).center() + QPoint(0, 60)), nullptr) << "below the rows";
}

TEST_F(ListModeViewTest, ColumnLayoutAndSortOrderAreRestored) {
  IconLoader icons;
  {
    ListModeView first(program().windowContext, icons);
    first.show();
    QHeaderView& columns = *first.table().header();
    columns.resizeSection(static_cast<int>(List::Summary), 123);
    columns.moveSection(columns.visualIndex(static_cast<int>(List::Run)), 0);
    first.table().setVisibleColumns({List::Name, List::Summary, List::Run, List::Scheduled});
    columns.setSortIndicator(static_cast<int>(List::Name), Qt::DescendingOrder);
  }
  ListModeView second(program().windowContext, icons);
  second.show();
  EXPECT_EQ(layoutText(second.table().places()).substr(0, 4), "run ");
  EXPECT_EQ(second.table().columnWidth(static_cast<int>(List::Summary)), 123);
  EXPECT_EQ(second.table().visibleColumns(), (std::vector{List::Name, List::Summary, List::Scheduled, List::Run}));
  EXPECT_EQ(second.table().header()->sortIndicatorSection(), static_cast<int>(List::Name));
  EXPECT_EQ(second.table().header()->sortIndicatorOrder(), Qt::DescendingOrder);
  writeJob(Kind::userAgent, "a");
  writeJob(Kind::userAgent, "b");
  ASSERT_TRUE(foundation.defaults.setSelectedMode(static_cast<int>(Mode::List)));
  scan();
  EXPECT_EQ(texts(second.table()), (Names{"b", "a"}));
}

TEST_F(ListModeViewTest, MenuKeyOpensTheMenuOfTheSelectedRow) {
  fill({"alpha", "beta", "gamma"});
  for (const bool isNameHidden : {false, true}) {
    table().setColumnHidden(0, isNameHidden);
    for (const char* name : {"alpha", "gamma"}) {
      program().currentMode.view()->select(URL::file(path(Kind::userAgent, std::string(name) + ".plist")));
      window().activateWindow();  // no longer active after a menu has been open
      ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
      table().setFocus();
      QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(),
                            QPoint());  // as sent by the platform for the menu key
      QCoreApplication::sendEvent(window().windowHandle(), &key);
      auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      ASSERT_NE(menu, nullptr) << name;
      EXPECT_EQ(titles(*menu)[0], name);
      menu->close();
      testdata::settle();
    }
  }
}

TEST_F(ListModeViewTest, HeaderMenuHidesAllColumnsButTheLast) {
  fill({"alpha"});
  std::ptrdiff_t ticked = 0;
  const auto chooseInHeader = [&](const std::string& title) {
    QMenu* menu = menuAt(header(), QPoint(20, header().height() / 2));
    ASSERT_NE(menu, nullptr);
    const auto actions = menu->actions();
    ticked = std::count_if(actions.begin(), actions.end(), [](const QAction* action) { return action->isChecked(); });
    choose(*menu, title);
    menu->close();
    testdata::settle();
  };
  std::vector<List> left(allListColumns.begin(), allListColumns.end());
  while (left.size() > 1) {
    chooseInHeader(title(left.front(), foundation.localize));
    EXPECT_EQ(ticked, std::ssize(left)) << "the visible columns";
    left.erase(left.begin());
    EXPECT_EQ(table().visibleColumns(), left);
  }
  EXPECT_THAT(workspace.calls, IsEmpty());
  chooseInHeader("State");
  EXPECT_THAT(workspace.calls, ElementsAre("beep"));
  EXPECT_EQ(table().visibleColumns(), left);

  chooseInHeader("Name");
  EXPECT_EQ(table().visibleColumns(), (std::vector{List::Name, List::State}));
  table().header()->resizeSection(0, 400);
  const int before = table().columnWidth(0);
  chooseInHeader(WindowTexts(foundation.localize).rightSizeThisColumn());
  EXPECT_LT(table().columnWidth(0), before);
}

TEST_F(ListModeViewTest, NamesAreShownLiterallyAndADragCarriesTheFileOfAJob) {
  loginItems.ownItems = {{"item", "/opt/item", {}, {}}};
  fill({"<b>b#?%"});
  ASSERT_THAT(texts(table()), ElementsAre("<b>b#?%", "item"));
  const auto mime = [&](int row) {
    return std::unique_ptr<QMimeData>(table().model()->mimeData({table().model()->index(row, 0)}));
  };
  const auto ofJob = mime(0);
  ASSERT_NE(ofJob, nullptr);
  ASSERT_EQ(ofJob->urls().size(), 1);
  EXPECT_EQ(utf8(ofJob->urls()[0].toLocalFile()), path(Kind::userAgent, "<b>b#?%.plist"));
  EXPECT_EQ(mime(1), nullptr);
  EXPECT_EQ(table().model()->supportedDragActions(), Qt::CopyAction);
  EXPECT_EQ(utf8(table().model()->index(0, 0).data(Qt::ToolTipRole).toString()), "<qt>&lt;b&gt;b#?%</qt>");
}

TEST_F(ListModeViewTest, ScanKeepsTheHorizontalScrollPosition) {
  fill({"alpha"});
  click(0);
  header().resizeSection(0, 3000);
  testdata::settle();
  QScrollBar& bar = *table().horizontalScrollBar();
  bar.setValue(bar.maximum());
  ASSERT_GT(bar.value(), 0);
  const int place = bar.value();
  writeJob(Kind::userAgent, "beta");
  scan();
  testdata::settle();
  ASSERT_EQ(texts(table()), (Names{"alpha", "beta"}));
  EXPECT_EQ(bar.value(), place);
}

}  // namespace
}  // namespace mirvel::ui
