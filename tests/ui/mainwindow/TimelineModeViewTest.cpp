#include "ui/mainwindow/TimelineModeView.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QMimeData>
#include <QScrollBar>
#include <QUrl>
#include <algorithm>

#include "support/FakeRunSource.h"
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

TEST_F(TimelineModeViewTest, ReloadKeepsWhatIsInViewAndTheMarkedRow) {
  (void)view();
  for (int job = 0; job < 9; ++job) writeCalendar("job" + std::to_string(job), {13, 14, 15, 16});
  scan();
  testdata::settle();
  click(3);
  table().verticalScrollBar()->setValue(100);
  const int place = middle(4).y();
  program().shell.modes[3]->update({jobNamed("job1"), jobNamed("job2"), jobNamed("job3"), jobNamed("job4"),
                                    jobNamed("job5"), jobNamed("job6"), jobNamed("job7")});
  EXPECT_EQ(middle(3).y(), place) << "job3 on the first day";
  EXPECT_EQ(table().currentIndex().row(), 2);
  EXPECT_EQ(selectedJob(), "job2");
  program().shell.modes[3]->update(
      {jobNamed("job1"), jobNamed("job3"), jobNamed("job4"), jobNamed("job5"), jobNamed("job6"), jobNamed("job7")});
  EXPECT_TRUE(table().selectionModel()->selectedRows().isEmpty()) << "its job isn't shown any more";
  program().shell.modes[3]->select(jobNamed("job7")->url);
  EXPECT_EQ(table().currentIndex().row(), 6);
  EXPECT_TRUE(table().viewport()->rect().contains(middle(6)));
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

/// A past of some days above Now. The same jobs as above.
class TimelinePastViewTest : public TimelineModeViewTest {
 protected:
  void fillPast(int hours = 30) {
    writeCalendar("gamma", {14, 16, 17, 18, 19});
    fill();
    m_hours = hours;
    deliver("alpha", 1);
    deliver("beta", 2);
  }
  /// A run each hour, a quarter of an hour after the other job; one that fails.
  void deliver(const std::string& label, int quarter, std::vector<RunReport> more = {}) {
    std::vector<RunReport> runs;
    for (int hour = m_hours; hour > 0; --hour) {
      runs.push_back(testdata::exitedRun(clock.now - 3600.0 * hour + 900.0 * quarter, hour == 5));
    }
    for (const RunReport& run : more) runs.push_back(run);
    JobReport report = testdata::reportOf(label, path(Kind::userAgent, label + ".plist"), std::move(runs));
    if (!report.runs.back().end) report.process = 5;
    reports.deliverReports({std::move(report)});
    testdata::settle();
  }
  int rowCount() { return table().model()->rowCount(); }
  int now() { return static_cast<int>(*view().mode().timelineArray().now()); }
  QRect rect(int row) { return table().visualRect(table().model()->index(row, 0)); }
  std::string heard(int row) {
    return utf8(QAccessible::queryAccessibleInterface(&table())
                    ->child(row)
                    ->text(QAccessible::Name)
                    .replace(QChar(0x202f), u' '));
  }

  testdata::FakeRunSource& reports = testdata::FakeRunSource::in(program().runs);

 private:
  int m_hours = 0;
};

TEST_F(TimelinePastViewTest, NowStaysInSightWhileRunsStartAndEnd) {
  fillPast();
  const int place = rect(now()).top();
  EXPECT_EQ(place, table().viewport()->height() / 3);
  int changes = 0, resets = 0;
  QObject::connect(table().model(), &QAbstractItemModel::modelReset, [&] { ++resets; });
  QObject::connect(table().model(), &QAbstractItemModel::rowsInserted, [&] { ++changes; });
  const int before = rowCount();
  deliver("alpha", 1, {testdata::openRun(clock.now)});
  EXPECT_EQ(rowCount(), before + 1);
  EXPECT_EQ(rect(now()).top(), place);
  deliver("alpha", 1, {testdata::exitedRun(clock.now)});
  EXPECT_EQ(rect(now()).top(), place);
  EXPECT_EQ(resets, 0) << "assistive technology would start again";
  EXPECT_GT(changes, 0);
}

TEST_F(TimelinePastViewTest, RowsThatTheUserHasScrolledToAndMarkedStay) {
  fillPast();
  int notifications = 0;
  click(now() - 3);
  const std::string marked = heard(table().currentIndex().row()), selected = selectedJob();
  const Subscription changed = program().selection.changed().subscribe([&] { ++notifications; });
  table().verticalScrollBar()->setValue(300);
  const auto anchor = table().anchor();
  ASSERT_TRUE(anchor);
  const std::string inView = heard(anchor->row);
  for (const auto& more :
       std::vector<std::vector<RunReport>>{{testdata::openRun(clock.now)},
                                           {testdata::exitedRun(clock.now - 86400 * 2), testdata::exitedRun(clock.now)},
                                           {}}) {
    deliver("beta", 2, more);
    EXPECT_EQ(heard(table().anchor()->row), inView);
    EXPECT_EQ(table().anchor()->top, anchor->top);
    EXPECT_EQ(heard(table().currentIndex().row()), marked);
    EXPECT_TRUE(table().selectionModel()->isSelected(table().currentIndex()));
  }
  EXPECT_EQ(selectedJob(), selected);
  EXPECT_EQ(notifications, 0) << "nobody has selected anything";
}

TEST_F(TimelinePastViewTest, ScreenReadersGetHowARunEnded) {
  fillPast(6);
  EXPECT_EQ(heard(0), "Earlier Today");
  EXPECT_EQ(heard(1), "8:01 AM, alpha, 2 s · succeeded");
  EXPECT_EQ(heard(3), "9:01 AM, alpha, 2 s · exit code 1");
  EXPECT_EQ(heard(now()), "Now");
  deliver("alpha", 1, {testdata::openRun(clock.now)});
  EXPECT_EQ(heard(now() + 1), "1:46 PM, alpha, running");
}

TEST_F(TimelinePastViewTest, StretchesAreUnfoldedByKeyboardAndMouse) {
  fill();
  std::vector<RunReport> runs;
  for (int run = 9; run > 0; --run) runs.push_back(testdata::exitedRun(clock.now - 60 * run));
  deliver("alpha", 1, runs);
  for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    view().setLayoutDirection(direction);
    const bool isMirrored = direction == Qt::RightToLeft;
    const auto opens = isMirrored ? Qt::Key_Left : Qt::Key_Right, closes = isMirrored ? Qt::Key_Right : Qt::Key_Left;
    const QPoint triangle(isMirrored ? rect(1).right() - 18 : 18, rect(1).center().y());
    const struct {
      const char* act;
      std::function<void()> does;
      int rows;
    } steps[] = {
        {"click on the name", [&] { click(1); }, 11},
        {"key", [&] { QTest::keyClick(&table(), opens); }, 20},
        {"once more", [&] { QTest::keyClick(&table(), opens); }, 20},
        {"key in one of its rows",
         [&] {
           QTest::keyClick(&table(), Qt::Key_Down);
           QTest::keyClick(&table(), closes);
         },
         11},
        {"triangle", [&] { QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, triangle); }, 20},
        {"triangle again", [&] { QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, triangle); }, 11},
        {"double click", [&] { QTest::mouseDClick(table().viewport(), Qt::LeftButton, {}, middle(1)); }, 20},
        {"key", [&] { QTest::keyClick(&table(), closes); }, 11},
    };
    for (const auto& step : steps) {
      step.does();
      EXPECT_EQ(rowCount(), step.rows) << step.act << isMirrored;
      EXPECT_EQ(table().currentIndex().row(), 1) << step.act << isMirrored;
    }
  }
  EXPECT_EQ(selectedJob(), "alpha");
}

/// The columns of pixels of a row that contain ink, as a text with one character for each.
std::string inkOf(const QImage& image, const QRect& row) {
  std::string ink;
  for (int x = 0; x < image.width(); ++x) {
    bool isInked = false;
    for (int y = row.top() + 4; y < row.bottom() - 4; ++y) {
      isInked = isInked || image.pixelColor(x, y) != image.pixelColor(1, row.top() + 1);
    }
    ink += isInked ? '#' : '.';
  }
  return ink;
}

TEST_F(TimelinePastViewTest, NothingIsCutOffOrOverlapsInANarrowView) {
  fill();
  RunReport failure = testdata::exitedRun(clock.now - 600);
  failure.end = RunEnd{.how = RunEnd::How::CouldNotStart,
                       .code = 2,
                       .obstacle = StartObstacle::Program,
                       .subject = "/a/very/long/path/of/a/program/that/does/not/exist/anywhere"};
  deliver("alpha", 1, {failure});
  for (const int width : {700, 400, 260}) {
    view().resize(width, 400);
    testdata::settle();
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
      view().setLayoutDirection(direction);
      testdata::settle();
      std::string ink = inkOf(table().viewport()->grab().toImage(), rect(1));
      if (direction == Qt::RightToLeft) std::reverse(ink.begin(), ink.end());
      EXPECT_EQ(ink.substr(0, 5), ".....") << width;
      EXPECT_EQ(ink.substr(ink.size() - 5), ".....") << "elided before the edge, " << width;
      const std::string gap(12, '.');
      EXPECT_NE(ink.find(gap, ink.find('#')), std::string::npos) << "between name and detail, " << width;
    }
  }
  const QString toolTip = table().model()->index(1, 0).data(Qt::ToolTipRole).toString();
  EXPECT_TRUE(toolTip.contains(QStringLiteral("anywhere"))) << "all of what is elided";
}

}  // namespace
}  // namespace mirvel::ui
