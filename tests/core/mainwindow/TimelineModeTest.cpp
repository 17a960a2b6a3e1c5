#include "core/mainwindow/TimelineMode.h"

#include <gmock/gmock.h>

#include "core/catalogue/Launchd.h"
#include "support/FakeRunSource.h"
#include "support/ModeFixture.h"

namespace mirvel {
namespace {

using propertylist::Dictionary;
using testing::ElementsAre;
using testing::IsEmpty;
using Names = std::vector<std::string>;

/// Records what the mode asks of its table. The row in view is set by the test.
class RecordingTimeline final : public TimelineTableType {
 public:
  std::optional<std::size_t> marked;
  std::optional<std::size_t> scrolledTo;
  std::optional<std::size_t> inView;
  std::optional<std::size_t> inViewAfterReload;
  std::vector<TimelineArray::Change> changes;
  int reloads = 0;
  int redraws = 0;

  std::optional<std::size_t> anchor() const override { return inView; }
  void reload(const std::optional<Anchor>& anchor) override {
    ++reloads;
    marked.reset();
    inViewAfterReload = anchor ? std::optional(anchor->after) : std::nullopt;
  }
  void rowsDidChange(const TimelineArray::Change& change, std::optional<std::size_t>) override {
    changes.push_back(change);
  }
  void redraw() override { ++redraws; }
  void mark(std::optional<std::size_t> row) override { marked = row; }
  void scrollTo(std::size_t row) override { scrolledTo = row; }
};

/// Monday 12 January 1970, 13:46:40.
class TimelineModeTest : public testdata::ModeFixture {
 protected:
  TimelineModeTest() { (void)foundation.defaults.setSelectedMode(3); }

  void writeDaily(const std::string& label, std::int64_t day) {
    writeJob(Kind::userAgent, label, {{"StartCalendarInterval", Dictionary{{"Day", day}}}});
  }
  std::shared_ptr<Job> launchdCopy(const std::string& label) {
    return Launchd::read(testdata::bytes(url(label).path()), url(label), Kind::userAgent, foundation.scanSettings(),
                         console);
  }
  Names rows() const {
    Names result;
    for (std::size_t row = 0; row < timeline.timelineArray().count(); ++row) {
      const TimelineCell cell = timeline.cell(row);
      result.push_back(cell.name + (cell.detail.empty() ? "" : ": " + cell.detail));
    }
    return result;
  }
  /// Rows: header, a; header, b; header, a.
  void fill() {
    writeJob(Kind::userAgent, "a",
             {{"StartCalendarInterval", propertylist::Array{Dictionary{{"Day", 13}}, Dictionary{{"Day", 20}}}}});
    writeDaily("b", 15);
    scan();
    shell.events.clear();
  }

  RecordingTimeline table;
  std::string zone = "UTC";
  TimelineMode timeline{program().windowContext, table, [this] { return zone; }};
};

TEST_F(TimelineModeTest, CellsShowTimeAndJob) {
  fill();
  writeJob(Kind::userAgent, "c", {{"StartInterval", 60}, {"Disabled", true}});
  scan();
  const struct {
    TimelineKind kind;
    const char* time;
    const char* name;
    bool isSecondary;
  } expected[] = {
      {TimelineKind::Group, "", "Repeat Interval", false},
      {TimelineKind::Interval, "", "c – 1 minute", true},
      {TimelineKind::Group, "", "Tomorrow", false},
      {TimelineKind::Time, "12:00", "a", false},
  };
  for (std::size_t row = 0; row < std::size(expected); ++row) {
    const TimelineCell cell = timeline.cell(row);
    EXPECT_EQ(cell.kind, expected[row].kind) << row;
    EXPECT_EQ(cell.time.substr(0, 5), expected[row].time) << row;
    EXPECT_EQ(cell.name, expected[row].name) << row;
    EXPECT_EQ(cell.isSecondary, expected[row].isSecondary) << row;
  }
  EXPECT_EQ(timeline.cell(99).name, "");
  const auto samples = timeline.sampleTimes();
  EXPECT_EQ(samples.size(), 24U);
  EXPECT_NE(std::find(samples.begin(), samples.end(), timeline.cell(3).time), samples.end());
}

TEST_F(TimelineModeTest, EqualJobsAreNotComputedAgainWhileThereAreRows) {
  fill();
  const Names before = rows();
  const int reloads = table.reloads;
  clock.now += 60;
  const Jobs copies{launchdCopy("a"), launchdCopy("b")};
  timeline.update(copies);
  EXPECT_EQ(rows(), before);
  EXPECT_EQ(table.reloads, reloads);
  EXPECT_EQ(timeline.content(), copies);
  clock.now += 86400;
  timeline.update({launchdCopy("a"), launchdCopy("b")});
  EXPECT_EQ(rows()[0], "Thursday, January 15, 1970") << "on the next day";
  EXPECT_EQ(table.reloads, reloads + 1);
  clock.now -= 86400;

  timeline.update({copies[1], copies[0]});
  EXPECT_EQ(table.reloads, reloads + 2) << "another order";
  timeline.update({});
  timeline.update({});
  EXPECT_THAT(rows(), IsEmpty());
  EXPECT_EQ(table.reloads, reloads + 4) << "without rows each time";
}

TEST_F(TimelineModeTest, EveryBuildAsksForTheZone) {
  fill();
  EXPECT_EQ(timeline.timelineArray().row(1).date().time_since_epoch(), std::chrono::hours(24 * 12));
  zone = "Asia/Kolkata";
  timeline.update({jobNamed("a")});
  EXPECT_EQ(timeline.timelineArray().row(1).date().time_since_epoch(),
            std::chrono::hours(24 * 12) - std::chrono::minutes(330));
  EXPECT_EQ(timeline.cell(1).time.substr(0, 5), "12:00");
}

TEST_F(TimelineModeTest, SelectByURLMarksTheFirstRunAndSelectsTheJobOfTheCatalogue) {
  fill();
  const auto first = jobNamed("a");
  timeline.select(URL::file("/jobs/none.plist"));
  EXPECT_FALSE(table.marked);
  timeline.select(URL::file(first->url.path().parent_path() / "." / first->url.path().filename()));
  EXPECT_EQ(table.marked, 1U);
  EXPECT_EQ(table.scrolledTo, 1U);
  EXPECT_EQ(program().selection.job(), first);
  program().editing.setUnsavedChanges(true);
  timeline.select(jobNamed("b")->url);
  EXPECT_EQ(table.marked, 3U);
  EXPECT_EQ(program().selection.job(), first) << "it is being edited";
  program().editing.setUnsavedChanges(false);
  timeline.selectionDidChange(5);
  timeline.select(first->url);
  EXPECT_EQ(table.marked, 5U) << "another row of the job is marked already";
  timeline.deselect();
  EXPECT_FALSE(table.marked);
  timeline.select(jobNamed("a"));
  EXPECT_FALSE(table.marked) << "by job it does nothing";
}

TEST_F(TimelineModeTest, AClickSelectsTheJobOfItsRow) {
  fill();
  for (const std::size_t row : {0U, 2U, 99U}) timeline.selectionDidChange(row);
  timeline.selectionDidChange(static_cast<std::size_t>(-1));
  EXPECT_FALSE(program().selection.job()) << "headers and rows that aren't there";
  timeline.selectionDidChange(5);
  EXPECT_EQ(program().selection.job(), jobNamed("a"));
  shell.events.clear();
  timeline.selectionDidChange(1);
  EXPECT_THAT(shell.events, IsEmpty()) << "another run of the selected job";
  timeline.update({launchdCopy("a"), launchdCopy("b")});
  timeline.selectionDidChange(3);
  EXPECT_EQ(program().selection.job(), jobNamed("b")) << "that of the catalogue";
}

TEST_F(TimelineModeTest, TheMenuNeverOffersToDelete) {
  fill();
  const std::string reveal = foundation.localize.revealInFinder();
  EXPECT_THAT(titles(timeline.menuForRow(1)), ElementsAre("a", "", "Run Now", "Stop", "", reveal));
  EXPECT_THAT(titles(timeline.menuForRow(3)), ElementsAre("b", "", "Run Now", "Stop", "", reveal));
  for (const std::size_t row : {0U, 6U, 99U}) EXPECT_THAT(titles(timeline.menuForRow(row)), IsEmpty()) << row;
  timeline.menuForRow(3).items()[5].action();
  EXPECT_THAT(workspace.calls, ElementsAre("reveal " + url("b").text()));

  JobMenu item;
  const auto application = std::make_shared<Job>(Kind::loginItemApplication, "item", "", "", URL::file("/item.app"));
  timeline.contextMenu(item, application);
  EXPECT_THAT(titles(item), ElementsAre("item", "", reveal, "Open"));
  program().catalogue.jobs()[0]->isNewFile = true;
  EXPECT_THAT(titles(timeline.menuForRow(1)), IsEmpty());
}

TEST_F(TimelineModeTest, TheFirstOfTheDraggedRowsDecides) {
  fill();
  EXPECT_EQ(timeline.dragRows({3, 0})->text(), url("b").text());
  EXPECT_FALSE(timeline.dragRows({0, 3})) << "a header";
  EXPECT_FALSE(timeline.dragRows({99, 3}));
  EXPECT_FALSE(timeline.dragRows({}));
}

TEST_F(TimelineModeTest, RowsOfAMissingJobDoNothing) {
  fill();
  program().catalogue.publish({jobNamed("b")});
  timeline.selectionDidChange(1);
  EXPECT_FALSE(program().selection.job());
  EXPECT_THAT(timeline.menuForRow(1).items(), IsEmpty());
  EXPECT_FALSE(timeline.dragRows({1}));
}

/// The same, with runs. It is visible unless a test hides it.
class LiveTimelineTest : public TimelineModeTest {
 protected:
  /// Jobs "a" (days 13 and 20), "b" (day 15), "c" (each minute), of which nothing is known yet.
  void fillLive() {
    fill();
    writeJob(Kind::userAgent, "c", {{"StartCalendarInterval", Dictionary{}}, {"StartInterval", 60}});
    scan();
    timeline.setVisible(true);
    queue.runDue();
    forget();
  }
  void forget() {
    table.changes.clear();
    table.reloads = table.redraws = 0;
  }
  JobReport report(const std::string& label, std::vector<RunReport> runs) {
    return testdata::reportOf(label, url(label).path(), std::move(runs));
  }
  /// Advances clock and timers.
  void pass(double seconds) {
    clock.now += seconds;
    queue.runFor(seconds);
  }
  std::string markedRow() const { return table.marked ? rows().at(*table.marked) : "none"; }

  testdata::FakeRunSource& reports = testdata::FakeRunSource::in(program().runs);
};

TEST_F(LiveTimelineTest, RunsThatStartAndEndMoveTheirRowsAndTheMark) {
  fillLive();
  reports.deliverReports({testdata::running(report("a", {testdata::exitedRun(clock.now - 100)}), clock.now - 1)});
  const Names coming{"Repeat Interval",
                     "c – 1 minute",
                     "Tomorrow",
                     "a",
                     "Thursday, January 15, 1970",
                     "b",
                     "Tuesday, January 20, 1970",
                     "a"};
  const auto expectRows = [&](Names past) {
    past.insert(past.end(), coming.begin(), coming.end());
    EXPECT_EQ(rows(), past);
  };
  expectRows({"Earlier Today", "a: 2 s · succeeded", "Now", "a: running"});
  EXPECT_EQ(table.reloads, 0) << "rows are replaced, not all of them loaded again";
  timeline.selectionDidChange(3);
  reports.deliverReports({report("a", {testdata::exitedRun(clock.now - 100), testdata::exitedRun(clock.now - 1, 1)})});
  expectRows({"Earlier Today", "a: 2 s · succeeded", "a: 2 s · exit code 1", "Now"});
  EXPECT_EQ(markedRow(), "a: 2 s · exit code 1") << "the mark follows the run";
  reports.deliverReports({report("a", {})});
  expectRows({});
  EXPECT_EQ(table.marked, 3U) << "the first that comes, since the row is gone";
  EXPECT_EQ(table.reloads, 0);

  timeline.select(jobNamed("c")->url);
  EXPECT_EQ(markedRow(), "c – 1 minute");
  reports.deliverReports({report("b", {testdata::exitedRun(clock.now - 5)})});
  EXPECT_EQ(markedRow(), "c – 1 minute");
  forget();
  reports.deliverReports({report("unknown", {testdata::exitedRun(clock.now - 5)})});
  EXPECT_TRUE(table.changes.empty()) << "no such job";
}

TEST_F(LiveTimelineTest, WhileHiddenNothingHappensAndThenRowsAreUpToDate) {
  fillLive();
  timeline.setVisible(false);
  reports.deliverReports({report("a", {testdata::exitedRun(clock.now - 100)})});
  pass(86400 * 3);
  EXPECT_EQ(table.reloads, 0);
  EXPECT_TRUE(table.changes.empty());
  EXPECT_EQ(rows()[2], "Tomorrow");
  timeline.setVisible(true);
  queue.runDue();
  EXPECT_EQ(table.reloads, 1);
  EXPECT_THAT(rows(), ElementsAre("Monday, January 12, 1970", "a: 2 s · succeeded", "Now", "Repeat Interval",
                                  "c – 1 minute", "Tuesday, January 20, 1970", "a", "Friday, February 13, 1970", "a",
                                  "Sunday, February 15, 1970", "b"));
}

TEST_F(LiveTimelineTest, TheClockRemovesComingRunsAndBeginsDays) {
  writeJob(Kind::userAgent, "d", {{"StartCalendarInterval", Dictionary{{"Day", 12}, {"Hour", 14}}}});  // in 800 s
  fillLive();
  EXPECT_THAT(rows(), ElementsAre("Repeat Interval", "c – 1 minute", "Today", "d", "Tomorrow", "a", testing::_, "b",
                                  testing::_, "a"));
  timeline.selectionDidChange(5);
  pass(799);
  EXPECT_TRUE(table.changes.empty());
  pass(2);
  EXPECT_THAT(table.changes, ElementsAre(TimelineArray::Change{2, 2, 0}));
  EXPECT_EQ(table.marked, 3U);
  const double untilMidnight = 86400 * 12 - clock.now;
  pass(untilMidnight - 1);
  EXPECT_EQ(table.reloads, 0);
  pass(2);
  EXPECT_EQ(table.reloads, 1);
  EXPECT_THAT(rows(), ElementsAre("Repeat Interval", "c – 1 minute", "Thursday, January 15, 1970", "b", testing::_, "a",
                                  "Thursday, February 12, 1970", "d", "Friday, February 13, 1970", "a"))
      << "the run at midnight is over";
  EXPECT_EQ(table.marked, 5U) << "the next run of the marked job";
}

TEST_F(LiveTimelineTest, AComingRunOfAnIntervalIsShownUntilItHasPassed) {
  fillLive();
  const auto planned = [&](double seconds) {
    JobReport result = report("c", {testdata::exitedRun(clock.now - 9000)});
    result.nextRun = clock.now + seconds;
    return result;
  };
  const auto row = [&] { return rows()[4]; };
  reports.deliverReports({planned(60)});
  EXPECT_THAT(row(), testing::StartsWith("c – 1 minute: next run 1:47"));
  reports.deliverReports({planned(90)});
  forget();
  pass(92);
  EXPECT_EQ(table.redraws, 1) << "although its host, which was killed, reports nothing";
  EXPECT_EQ(row(), "c – 1 minute");
  pass(500);
  EXPECT_EQ(table.redraws, 1) << "nothing is left to wait for";
}

TEST_F(LiveTimelineTest, ManyChangesAtOnceBuildTheTimelineAgainAndKeepWhatIsInView) {
  for (int job = 0; job < 20; ++job) writeDaily("job" + std::to_string(job), 15);
  fillLive();
  timeline.selectionDidChange(5);
  const std::string marked = rows()[5];
  table.inView = 7;
  const std::string inView = rows()[7];
  std::vector<JobReport> all;
  for (int job = 0; job < 20; ++job) {
    all.push_back(report("job" + std::to_string(job), {testdata::exitedRun(clock.now - 50 - job)}));
  }
  reports.deliverReports(all);
  EXPECT_EQ(table.reloads, 1);
  EXPECT_EQ(markedRow(), marked);
  ASSERT_TRUE(table.inViewAfterReload);
  EXPECT_EQ(rows()[*table.inViewAfterReload], inView);
  EXPECT_EQ(*table.inViewAfterReload, 7U + 22) << "20 runs and two headers above";
}

TEST_F(LiveTimelineTest, StretchesAreUnfoldedByTheUserAndStaySo) {
  fillLive();
  std::vector<RunReport> runs;
  for (int run = 4; run > 0; --run) runs.push_back(testdata::exitedRun(clock.now - 60 * run, run == 2));
  reports.deliverReports({report("c", runs)});
  const std::string stretch = rows()[1];
  EXPECT_THAT(stretch, testing::HasSubstr("4 runs"));
  timeline.selectionDidChange(1);
  EXPECT_FALSE(timeline.setOpen(1, false)) << "folded already";
  EXPECT_FALSE(timeline.setOpen(0, true)) << "a header";
  EXPECT_FALSE(timeline.setOpen(99, true));
  auto items = timeline.menuForRow(1).items();
  EXPECT_EQ(items.back().title, "Show Each Run");
  items.back().action();
  EXPECT_EQ(rows()[3], "c: 2 s · succeeded");
  EXPECT_EQ(rows()[4], "c: 2 s · exit code 1");
  EXPECT_EQ(table.marked, 1U) << "the stretch stays marked";
  timeline.selectionDidChange(4);

  runs.push_back(testdata::exitedRun(clock.now - 1));
  reports.deliverReports({report("c", runs), report("b", {testdata::exitedRun(clock.now - 3600)})});
  EXPECT_THAT(rows()[2], testing::HasSubstr("5 runs"));
  EXPECT_TRUE(timeline.cell(2).isOpen);
  EXPECT_EQ(markedRow(), "c: 2 s · exit code 1");
  const Jobs copies{launchdCopy("c"), launchdCopy("a")};
  timeline.update(copies);
  EXPECT_TRUE(timeline.cell(1).isOpen) << "of the same job among others";
  EXPECT_EQ(timeline.menuForRow(3).items().back().title, "Fold Runs");
  EXPECT_TRUE(timeline.setOpen(3, false));
  EXPECT_FALSE(timeline.cell(1).isOpen);
  EXPECT_EQ(table.marked, 1U) << "the stretch with the marked run";
}

TEST_F(LiveTimelineTest, TheLogIsThatOfTheRowWhoseMenuShowsIt) {
  fillLive();
  const double now = clock.now;
  reports.deliverReports({report("a", {testdata::exitedRun(now - 900), testdata::exitedRun(now - 500)})});
  timeline.select(jobNamed("b")->url);
  int logs = 0;
  program().shell.sheets[Sheet::Log] = [&] { ++logs; };
  const auto row = timeline.timelineArray().find({.kind = TimelineKind::Ended, .time = now - 900, .owner = 0});
  ASSERT_TRUE(row);
  const JobMenu menu = timeline.menuForRow(*row);
  for (const auto& item : menu.items()) {
    if (item.title == "Show Log") item.action();
  }
  EXPECT_EQ(logs, 1);
  EXPECT_EQ(program().selection.job(), jobNamed("a"));
  EXPECT_EQ(table.marked, row) << "not a coming run of the job, for which the view would scroll";
}

TEST_F(LiveTimelineTest, SelectByURLPrefersWhatAJobDoesNow) {
  fillLive();
  writeJob(Kind::userAgent, "e", {});
  scan();
  const double now = clock.now;
  reports.deliverReports({report("a", {testdata::exitedRun(now - 9)}), testdata::running(report("b", {}), now - 5),
                          report("e", {testdata::exitedRun(now - 9000), testdata::exitedRun(now - 8000)})});
  const struct {
    const char* job;
    TimelineKind kind;
    double time;
  } table_[] = {{"a", TimelineKind::Time, 12 * 86400.0},
                {"b", TimelineKind::Running, now - 5},
                {"c", TimelineKind::Interval, 0},
                {"e", TimelineKind::Ended, now - 8000}};
  for (const auto& row : table_) {
    timeline.select(jobNamed(row.job)->url);
    ASSERT_TRUE(table.marked) << row.job;
    EXPECT_EQ(timeline.timelineArray().row(*table.marked).kind, row.kind) << row.job;
    EXPECT_EQ(timeline.timelineArray().row(*table.marked).time, row.time) << row.job;
  }
}

}  // namespace
}  // namespace mirvel
