#include "ui/mainwindow/TreeModeView.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QMimeData>
#include <QScrollBar>
#include <QUrl>
#include <functional>

#include "ui/mainwindow/ModeViewFixture.h"

namespace mirvel::ui {
namespace {

using testing::ElementsAre;
using Names = std::vector<std::string>;

class TreeModeViewTest : public ModeViewFixture<TreeModeView> {
 protected:
  TreeModeViewTest() { (void)foundation.defaults.setSelectedMode(1); }

  TreeOutline& outline() { return view().outline(); }
  QModelIndex group(int row) { return outline().model()->index(row, 0); }
  QModelIndex job(int section, int row) { return outline().model()->index(row, 0, group(section)); }
  void key(int key) { QTest::keyClick(&outline(), static_cast<Qt::Key>(key)); }
  void clickButton(int section) {
    QTest::mouseClick(outline().viewport(), Qt::LeftButton, {}, outline().countButton(group(section)).center());
  }
  /// The rows from top to bottom; groups are represented by their counts.
  Names rows() {
    Names names;
    for (QModelIndex index = group(0); index.isValid(); index = outline().indexBelow(index)) {
      const bool isGroup = TreeModel::isGroup(index);
      names.push_back(utf8(index.data(isGroup ? static_cast<int>(TreeModel::CountRole) : Qt::DisplayRole).toString()));
    }
    return names;
  }
};

TEST_F(TreeModeViewTest, RowsAreSelectedAndGroupsKeepTheSelection) {
  show({"a1", "a2", "b1", "c1"});
  const struct {
    const char* act;
    std::function<void()> does;
    const char* selected;
    std::function<QModelIndex()> current;
  } steps[] = {
      {"click", [&] { click(outline(), job(0, 1)); }, "a2", [&] { return job(0, 1); }},
      {"down, to a group", [&] { key(Qt::Key_Down); }, "a2", [&] { return group(1); }},
      {"down", [&] { key(Qt::Key_Down); }, "b1", [&] { return job(1, 0); }},
      {"click on a group", [&] { click(outline(), group(2)); }, "b1", [&] { return group(2); }},
      {"click with control", [&] { click(outline(), job(1, 0), Qt::ControlModifier); }, "b1",
       [&] { return job(1, 0); }},
      {"letters of a job", [&] { QTest::keyClicks(&outline(), QStringLiteral("c1")); }, "c1",
       [&] { return job(2, 0); }},
      {"home, a group", [&] { key(Qt::Key_Home); }, "c1", [&] { return group(0); }},
      {"space on a group", [&] { key(Qt::Key_Space); }, "c1", [&] { return group(0); }},
      {"end", [&] { key(Qt::Key_End); }, "c1", [&] { return job(2, 0); }},
      {"left, to the group", [&] { key(Qt::Key_Left); }, "c1", [&] { return group(2); }},
      {"left, closes it", [&] { key(Qt::Key_Left); }, "c1", [&] { return group(2); }},
      {"click below the rows",
       [&] {
         QTest::mouseClick(outline().viewport(), Qt::LeftButton, {}, {50, outline().viewport()->height() - 5});
       },
       "c1", [&] { return group(2); }},
      {"click on a group with unsaved changes",
       [&] {
         program().editing.setUnsavedChanges(true);
         click(outline(), group(1));
         EXPECT_TRUE(interface.sheets.empty());
       },
       "c1", [&] { return group(1); }},
      {"click on another job", [&] { click(outline(), job(0, 0)); }, "c1", [&] { return group(1); }},
      {"click on a third", [&] { click(outline(), job(0, 1)); }, "c1", [&] { return group(1); }},
  };
  view().resize(300, 600);
  testdata::settle();
  for (const auto& step : steps) {
    step.does();
    EXPECT_EQ(markedName(outline()), step.selected) << step.act;
    EXPECT_EQ(selectedJob(), step.selected) << step.act;
    EXPECT_EQ(outline().currentIndex(), step.current()) << step.act;
  }
  EXPECT_FALSE(outline().isExpanded(group(2)));
  EXPECT_EQ(interface.sheets.size(), 1U) << "the second click doesn't ask again";
}

TEST_F(TreeModeViewTest, CountButtonTogglesItsGroupPersistently) {
  show({"a1", "a2", "b1"});
  EXPECT_EQ(rows(), (Names{"2", "a1", "a2", "1", "b1"})) << "open at first";
  clickButton(0);
  EXPECT_EQ(rows(), (Names{"2", "1", "b1"}));
  QTest::mouseDClick(outline().viewport(), Qt::LeftButton, {}, outline().countButton(group(0)).center());
  EXPECT_EQ(rows(), (Names{"2", "1", "b1"})) << "each of the two clicks counts once";

  const QPoint button = outline().countButton(group(1)).center();
  QTest::mousePress(outline().viewport(), Qt::LeftButton, {}, button);
  QTest::mouseRelease(outline().viewport(), Qt::LeftButton, {}, button - QPoint(100, 0));
  EXPECT_TRUE(outline().isExpanded(group(1))) << "let go elsewhere";

  writeJob(Kind::userAgent, "a3");
  scan();
  EXPECT_EQ(rows(), (Names{"3", "1", "b1"})) << "a refresh";
  makeView();
  EXPECT_EQ(rows(), (Names{"3", "1", "b1"})) << "the next start";
  outline().expand(group(0));
  outline().collapse(group(1));
  makeView();
  EXPECT_EQ(rows(), (Names{"3", "a1", "a2", "a3", "1"}));
  EXPECT_TRUE(outline().countButton(job(0, 0)).isEmpty());
}

TEST_F(TreeModeViewTest, SelectingAJobExpandsItsGroupAndScrollsToIt) {
  Names names;
  for (int i = 0; i < 100; ++i) names.push_back("a" + std::to_string(100 + i));
  show(names);
  view().resize(300, 200);
  clickButton(0);
  ASSERT_EQ(rows().size(), 1U);
  program().currentMode.view()->select(jobNamed("a180")->url);
  EXPECT_EQ(markedName(outline()), "a180");
  EXPECT_EQ(selectedJob(), "a180");
  EXPECT_TRUE(outline().viewport()->rect().contains(outline().visualRect(job(0, 80))));

  const int place = outline().verticalScrollBar()->value();
  for (const char* change : {"nothing", "b1"}) {
    if (*change == 'b') writeJob(Kind::localAgent, change);
    scan();
    testdata::settle();
    EXPECT_EQ(outline().verticalScrollBar()->value(), place) << change;
    EXPECT_EQ(markedName(outline()), "a180") << change;
  }
  ASSERT_EQ(outline().model()->rowCount(), 2);
  program().currentMode.view()->deselect();
  EXPECT_EQ(markedName(outline()), "");
  EXPECT_EQ(outline().verticalScrollBar()->value(), place);
}

TEST_F(TreeModeViewTest, ContextMenuAndDragBelongToTheJob) {
  show({"a1", "b1"});
  const std::string reveal = foundation.localize.revealInFinder();
  QMenu* menu = menuAt(outline(), outline().visualRect(job(1, 0)).center());
  ASSERT_NE(menu, nullptr);
  EXPECT_THAT(titles(*menu), ElementsAre("b1", "", "Run Now", "Stop", "", reveal, "Delete"));
  menu->close();
  EXPECT_EQ(selectedJob(), "");
  EXPECT_EQ(menuAt(outline(), outline().visualRect(group(1)).center()), nullptr);

  const std::unique_ptr<QMimeData> data(outline().model()->mimeData({job(0, 0)}));
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(data->urls(), QList{QUrl::fromLocalFile(qt(path(Kind::userAgent, "a1.plist").string()))});
  EXPECT_EQ(outline().model()->mimeData({group(0)}), nullptr);
}

TEST_F(TreeModeViewTest, AssistiveProgramsReadAndPressRows) {
  QAccessible::setActive(true);
  show({"a1", "a2"});
  QAccessibleInterface* tree = QAccessible::queryAccessibleInterface(&outline());
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(tree->role(), QAccessible::Tree);
  EXPECT_EQ(tree->text(QAccessible::Name), QStringLiteral("Jobs"));
  QAccessibleTableInterface* cells = tree->tableInterface();
  ASSERT_NE(cells, nullptr);
  const std::pair<const char*, const char*> texts[] = {{"Ada Lovelace", "2"}, {"a1", ""}, {"a2", ""}};
  ASSERT_EQ(cells->rowCount(), 3);
  for (int row = 0; row < 3; ++row) {
    EXPECT_EQ(utf8(cells->cellAt(row, 0)->text(QAccessible::Name)), texts[row].first);
    EXPECT_EQ(utf8(cells->cellAt(row, 0)->text(QAccessible::Description)), texts[row].second);
  }
  const auto press = [&](int row) {
    cells->cellAt(row, 0)->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  };
  press(2);
  EXPECT_EQ(selectedJob(), "a2");
  EXPECT_EQ(markedName(outline()), "a2");
  press(0);
  EXPECT_EQ(markedName(outline()), "a2") << "a group can't be pressed";
  QAccessible::setActive(false);
}

TEST_F(TreeModeViewTest, CountIsOnTheLeftInRightToLeftLayout) {
  show({"a1"});
  const auto isLeft = [&] {
    const QRect button = outline().countButton(group(0));
    EXPECT_TRUE(outline().viewport()->rect().contains(button));
    return button.center().x() < outline().viewport()->width() / 2;
  };
  EXPECT_FALSE(isLeft());
  view().setLayoutDirection(Qt::RightToLeft);
  testdata::settle();
  EXPECT_TRUE(isLeft());
  clickButton(0);
  EXPECT_FALSE(outline().isExpanded(group(0)));
}

}  // namespace
}  // namespace mirvel::ui
