#include "core/mainwindow/TimelineMode.h"

#include <gmock/gmock.h>

#include "core/catalogue/Launchd.h"
#include "support/ModeFixture.h"

namespace mirvel {
namespace {

using propertylist::Dictionary;
using testing::ElementsAre;
using testing::IsEmpty;
using Names = std::vector<std::string>;

using RecordingTimeline = testdata::RecordingView<TimelineTableType, std::size_t>;

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
    for (const Timeline& row : timeline.timelineArray().rows()) result.push_back(row.name());
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
  clock.now += 86400 * 2;
  const Jobs copies{launchdCopy("a"), launchdCopy("b")};
  timeline.update(copies);
  EXPECT_EQ(rows(), before);
  EXPECT_EQ(table.reloads, reloads);
  EXPECT_EQ(timeline.content(), copies);

  timeline.update({copies[1], copies[0]});
  EXPECT_NE(rows(), before) << "another order";
  EXPECT_EQ(table.reloads, reloads + 1);
  timeline.update({});
  timeline.update({});
  EXPECT_THAT(rows(), IsEmpty());
  EXPECT_EQ(table.reloads, reloads + 3) << "without rows each time";
}

TEST_F(TimelineModeTest, EveryBuildAsksForTheZone) {
  fill();
  EXPECT_EQ(timeline.timelineArray().rows()[1].date().time_since_epoch(), std::chrono::hours(24 * 12));
  zone = "Asia/Kolkata";
  timeline.update({jobNamed("a")});
  EXPECT_EQ(timeline.timelineArray().rows()[1].date().time_since_epoch(),
            std::chrono::hours(24 * 12) - std::chrono::minutes(330));
  EXPECT_EQ(timeline.cell(1).time.substr(0, 5), "12:00");
}

TEST_F(TimelineModeTest, SelectByURLMarksTheFirstRunAndSelectsTheJobOfTheCatalogue) {
  fill();
  expectToSelectByURL(timeline, table, 1, 3);
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
  timeline.content()[0]->url = URL::file("/moved");
  timeline.selectionDidChange(1);
  EXPECT_FALSE(program().selection.job());
  EXPECT_THAT(timeline.menuForRow(1).items(), IsEmpty());
  EXPECT_FALSE(timeline.dragRows({1}));
}

}  // namespace
}  // namespace mirvel
