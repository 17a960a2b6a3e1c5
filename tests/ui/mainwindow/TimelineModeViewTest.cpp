#include "ui/mainwindow/TimelineModeView.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QMimeData>
#include <QScrollBar>
#include <QUrl>

#include "ui/mainwindow/ModeViewFixture.h"

namespace mirvel::ui {
namespace {

using testing::ElementsAre;

/// Monday 12 January 1970. Rows: header, c; header, alpha; header, beta; header, alpha.
class TimelineModeViewTest : public ModeViewFixture<TimelineModeView> {
 protected:
  TimelineModeViewTest() { (void)foundation.defaults.setSelectedMode(3); }

  std::unique_ptr<TimelineModeView> newView() override {
    auto view = std::make_unique<TimelineModeView>(program().windowContext, nullptr, [] { return std::string("UTC"); });
    view->resize(400, 400);
    return view;
  }
  TimelineTable& table() { return view().table(); }
  void fill() {
    (void)view();
    writeCalendar("alpha", {13, 20});
    writeCalendar("beta", {15});
    writeJob(Kind::userAgent, "c", {{"StartInterval", 60}, {"Disabled", true}});
    scan();
    testdata::settle();
  }
  void writeCalendar(const std::string& label, const std::vector<std::int64_t>& days) {
    propertylist::Array intervals;
    for (const std::int64_t day : days)
      intervals.push_back(propertylist::Value(propertylist::Dictionary{{"Day", propertylist::Value(day)}}));
    writeJob(Kind::userAgent, label, {{"StartCalendarInterval", propertylist::Value(std::move(intervals))}});
  }
  QPoint middle(int row) { return table().visualRect(table().model()->index(row, 0)).center(); }
  void click(int row, Qt::KeyboardModifiers modifiers = {}) {
    ModeViewFixture::click(table(), table().model()->index(row, 0), modifiers);
  }
  void expectSelected(const std::string& name, int row, const std::string& why) {
    const QModelIndexList marked = table().selectionModel()->selectedRows();
    EXPECT_EQ(marked.isEmpty() ? -1 : marked.front().row(), row) << why;
    EXPECT_EQ(selectedJob(), name) << why;
  }
};

TEST_F(TimelineModeViewTest, MouseAndKeyboardSelectJobsButNeverHeaders) {
  fill();
  const struct {
    const char* act;
    std::function<void()> does;
    const char* selected;
    int row;
  } rows[] = {
      {"click on a header", [&] { click(2); }, "", -1},
      {"down, with nothing marked", [&] { QTest::keyClick(&table(), Qt::Key_Down); }, "c", 1},
      {"down", [&] { QTest::keyClick(&table(), Qt::Key_Down); }, "alpha", 3},
      {"click", [&] { click(5); }, "beta", 5},
      {"click on a header", [&] { click(4); }, "beta", 5},
      {"click with control", [&] { click(5, Qt::ControlModifier); }, "beta", 5},
      {"letters", [&] { QTest::keyClicks(&table(), QStringLiteral("al")); }, "alpha", 7},
      {"letters of a header", [&] { QTest::keyClicks(&table(), QStringLiteral("Tomor")); }, "alpha", 7},
      {"click below the rows",
       [&] { QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, middle(7) + QPoint(0, 60)); }, "alpha", 7},
      {"right click", [&] { QTest::mouseClick(table().viewport(), Qt::RightButton, {}, middle(5)); }, "alpha", 7},
      {"click with unsaved changes",
       [&] {
         program().editing.setUnsavedChanges(true);
         click(5);
       },
       "alpha", 7},
  };
  for (const auto& row : rows) {
    row.does();
    expectSelected(row.selected, row.row, row.act);
  }
  EXPECT_EQ(table().currentIndex().row(), 7);
  EXPECT_EQ(interface.sheets.size(), 1U);
}

TEST_F(TimelineModeViewTest, ScreenReadersGetTimeAndJob) {
  fill();
  QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&table());
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->text(QAccessible::Name), QStringLiteral("Timeline"));
  ASSERT_EQ(list->childCount(), 8);
  const char* texts[] = {"Repeat Interval", "c – 1 minute, Disabled", "Tomorrow", "12:00 AM, alpha"};
  for (int row = 0; row < 4; ++row) {
    const QString heard = list->child(row)->text(QAccessible::Name).replace(QChar(0x202f), u' ');
    EXPECT_EQ(utf8(heard), texts[row]);
  }
}

TEST_F(TimelineModeViewTest, ContextMenuAndDragBelongToTheRowsJob) {
  fill();
  QMenu* menu = menuAt(table(), middle(5));
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(menu->actions().front()->text(), QStringLiteral("beta"));
  menu->actions().back()->trigger();
  EXPECT_THAT(workspace.calls, ElementsAre("reveal " + path(Kind::userAgent, "beta.plist").string()));
  menu->close();
  testdata::settle();
  EXPECT_EQ(menuAt(table(), middle(4)), nullptr) << "a header";
  EXPECT_EQ(menuAt(table(), middle(7) + QPoint(0, 60)), nullptr) << "below the rows";

  const QAbstractItemModel& model = *table().model();
  const std::unique_ptr<QMimeData> dragged(model.mimeData({model.index(5, 0)}));
  ASSERT_NE(dragged, nullptr);
  EXPECT_EQ(dragged->urls(), QList{QUrl::fromLocalFile(qt(path(Kind::userAgent, "beta.plist").string()))});
  EXPECT_EQ(model.mimeData({model.index(4, 0)}), nullptr);
  EXPECT_FALSE(model.flags(model.index(4, 0)).testFlag(Qt::ItemIsDragEnabled));
}

TEST_F(TimelineModeViewTest, ReloadKeepsTheScrollPositionAndClearsTheSelection) {
  (void)view();
  for (int job = 0; job < 9; ++job) writeCalendar("job" + std::to_string(job), {13, 14, 15, 16});
  scan();
  testdata::settle();
  click(3);
  table().verticalScrollBar()->setValue(100);
  program().shell.modes[3]->update({jobNamed("job1"), jobNamed("job2"), jobNamed("job3"), jobNamed("job4"),
                                    jobNamed("job5"), jobNamed("job6"), jobNamed("job7")});
  EXPECT_EQ(table().verticalScrollBar()->value(), 100);
  EXPECT_TRUE(table().selectionModel()->selectedRows().isEmpty());
  program().shell.modes[3]->select(jobNamed("job7")->url);
  EXPECT_EQ(table().currentIndex().row(), 7);
  EXPECT_TRUE(table().viewport()->rect().contains(middle(7)));
}

TEST_F(TimelineModeViewTest, TimesAndNamesFollowTheLayoutDirection) {
  fill();
  // Looks for dark pixels near the vertical centre of the row, on a light background.
  const auto inked = [&](int row) {
    const QImage image = table().viewport()->grab().toImage();
    const QRect rect = table().visualRect(table().model()->index(row, 0));
    int first = image.width(), last = -1;
    for (int x = 0; x < image.width(); ++x) {
      for (int y = rect.top() + 4; y < rect.bottom() - 4; ++y) {
        if (image.pixelColor(x, y) == image.pixelColor(1, rect.top() + 1)) continue;
        first = std::min(first, x);
        last = std::max(last, x);
      }
    }
    return std::pair(first, last);
  };
  const int middleOfView = table().viewport()->width() / 2;
  for (const int row : {0, 1, 3}) EXPECT_LT(inked(row).second, middleOfView + 60) << row;
  view().setLayoutDirection(Qt::RightToLeft);
  testdata::settle();
  for (const int row : {0, 1, 3}) EXPECT_GT(inked(row).first, middleOfView - 60) << row;
}

}  // namespace
}  // namespace mirvel::ui
