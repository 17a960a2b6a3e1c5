#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <map>
#include <random>

#include "core/catalogue/Launchd.h"
#include "core/mainwindow/TimelineCell.h"
#include "core/mainwindow/TimelineTexts.h"
#include "support/FakeRunSource.h"
#include "support/JobText.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

using namespace std::chrono;
using propertylist::Dictionary;
using testdata::exitedRun;
using testdata::openRun;
using testdata::reportOf;
using testdata::running;
using testing::ElementsAre;
using testing::IsEmpty;
using Rows = std::vector<std::string>;
using Why = MissedRun::Why;

double seconds1970(sys_seconds moment) {
  return static_cast<double>(moment.time_since_epoch().count());
}

constexpr sys_seconds atTen = sys_days(2026y / 11 / 22) + 10h;
const double startOfSunday = seconds1970(sys_days(2026y / 11 / 22));
constexpr double hourLength = 3600, dayLength = 86400;

std::string markText(RunMark mark) {
  static const std::map<RunMark, std::string> texts = {{RunMark::None, ""},         {RunMark::Running, "runs "},
                                                       {RunMark::Succeeded, "ok "}, {RunMark::Failed, "FAILED "},
                                                       {RunMark::Stopped, "stop "}, {RunMark::Unknown, "unknown "},
                                                       {RunMark::Missed, "missed "}};
  return texts.at(mark);
}

/// Jobs without a schedule, and what is reported of them.
class TimelinePastTest : public testdata::ProgramFixture {
 protected:
  void add(const std::string& label, JobReport report = {}, Dictionary keys = {}) {
    jobs.push_back(Launchd::read(testdata::jobText(label, std::move(keys)), URL::file("/" + label), Kind::userAgent,
                                 foundation.scanSettings(), console));
    reports[label] = std::move(report);
  }
  void add(const std::string& label, std::vector<RunReport> runs) { add(label, reportOf(label, "", std::move(runs))); }
  TimelineArray::ReportOf reported() {
    return [this](const Job& job) {
      const auto found = reports.find(job.name);
      return found == reports.end() ? nullptr : &found->second;
    };
  }
  TimelineArray built(sys_seconds now = atTen, const char* zone = "UTC", const TimelineArray::IsOpen& isOpen = {}) {
    texts = std::make_unique<TimelineTexts>(localize, zone);
    return {jobs, reported(), now, *texts, isOpen};
  }
  /// "# header", "= Now", and rows such as "FAILED 09:00 job (2 s · exit code 1)".
  std::string described(const TimelineArray& timeline, std::size_t row) {
    const Timeline shown = timeline.row(row);
    const Job* const job = shown.isHeader() ? nullptr : jobs[shown.owner].get();
    const JobReport* const report = job ? reported()(*job) : nullptr;
    const TimelineCell cell = timelineCell(timeline, row, job, report, seconds1970(atTen), *texts);
    if (cell.isHeader()) return (cell.kind == TimelineKind::Now ? "= " : "# ") + cell.name;
    std::string text = cell.isNested ? "  " : cell.isOpen ? "v " : cell.kind == TimelineKind::Fold ? "> " : "";
    text += markText(cell.mark);
    if (!cell.time.empty()) text += cell.time + ' ';
    return text + cell.name + (cell.detail.empty() ? "" : " (" + cell.detail + ')');
  }
  Rows described(const TimelineArray& timeline) {
    Rows rows;
    for (std::size_t row = 0; row < timeline.count(); ++row) rows.push_back(described(timeline, row));
    return rows;
  }

  const Localize localize{"en", {}, "de"};  // times with 24 hours and plain blanks
  std::unique_ptr<TimelineTexts> texts;
  Jobs jobs;
  std::map<std::string, JobReport> reports;
};

TEST_F(TimelinePastTest, EndingsAreMarkedAndShownInWords) {
  const struct {
    RunEnd end;
    double seconds;
    const char* text;
  } rows[] = {
      {{.code = 0}, 2, "ok 09:00 a (2 s · succeeded)"},
      {{.code = 1}, 2, "FAILED 09:00 a (2 s · exit code 1)"},
      {{.code = 143, .isStopped = true}, 125, "stop 09:00 a (2 min 5 s · stopped)"},
      {{.how = RunEnd::How::Signalled, .code = 11},
       2,
       "FAILED 09:00 a (2 s · ended by signal 11 (segmentation fault))"},
      {{.how = RunEnd::How::Signalled, .code = 40}, 2, "FAILED 09:00 a (2 s · ended by signal 40)"},
      {{.how = RunEnd::How::Signalled, .code = 9, .isStopped = true, .isTimedOut = true},
       2,
       "stop 09:00 a (2 s · killed because it didn’t end when asked to)"},
      {{.how = RunEnd::How::CouldNotStart, .code = 2, .obstacle = StartObstacle::Program, .subject = "/none"},
       0,
       "FAILED 09:00 a (couldn’t be started: the program “/none” doesn’t exist)"},
      {{.how = RunEnd::How::Lost}, 2, "unknown 09:00 a (2 s · how it ended isn’t known)"},
  };
  const double nine = startOfSunday + 9 * hourLength;
  for (const auto& row : rows) {
    jobs.clear();
    add("a", {RunReport{.start = nine, .endTime = nine + row.seconds, .end = row.end}});
    EXPECT_THAT(described(built()), ElementsAre("# Earlier Today", row.text, "= Now"));
  }
  jobs.clear();
  add("a", {openRun(nine)});
  EXPECT_THAT(described(built()), ElementsAre("# Earlier Today", "unknown 09:00 a (how it ended isn’t known)", "= Now"))
      << "neither an end nor a process";
  jobs.clear();
  add("a", {RunReport{.start = nine, .endTime = nine - 60, .end = RunEnd{}}});
  EXPECT_THAT(described(built()), ElementsAre("# Earlier Today", "ok 09:00 a (succeeded)", "= Now"))
      << "clock set back";
}

TEST_F(TimelinePastTest, WithLittleRoomADetailIsWhatTheMarkDoesntSay) {
  const double nine = startOfSunday + 9 * hourLength;
  add("good", {exitedRun(nine)});
  add("bad", {exitedRun(nine + 60, 1)});
  add("lost", {openRun(nine + 120)});
  const TimelineArray timeline = built();
  const char* const expected[] = {"2 s", "exit code 1", ""};
  for (std::size_t row = 1; row <= 3; ++row) {
    const Job& job = *jobs[timeline.row(row).owner];
    const auto cell = timelineCell(timeline, row, &job, reported()(job), seconds1970(atTen), *texts);
    EXPECT_EQ(cell.shortDetail, expected[row - 1]) << job.name;
  }
}

TEST_F(TimelinePastTest, ThePastIsAboveNowAndTheFutureBelow) {
  add("backup",
      reportOf("backup", "", {exitedRun(startOfSunday - 2 * hourLength), exitedRun(startOfSunday + 9 * hourLength, 1)}),
      {{"StartCalendarInterval", Dictionary{{"Day", 22}, {"Hour", 22}}}});
  add("often", running(reportOf("often", "", {}), startOfSunday + 9.5 * hourLength), {{"StartInterval", 3600}});
  add("old", running(reportOf("old", "", {}), startOfSunday - 3 * dayLength));
  add("unknown", reportOf("unknown", "", {}));
  reports["unknown"].process = 5;
  reports["often"].isStopping = true;
  reports["often"].nextRun = seconds1970(atTen) + 1800;
  add("missing");
  reports["missing"].missed = {{.time = startOfSunday - 3 * hourLength, .why = Why::Asleep},
                               {.time = startOfSunday + hourLength, .why = Why::NoHost},
                               {.time = startOfSunday + 2 * hourLength, .why = Why::StillRunning}};
  EXPECT_THAT(
      described(built()),
      ElementsAre("# Yesterday",                                                //
                  "missed 21:00 missing (missed, because the computer slept)",  //
                  "ok 22:00 backup (2 s · succeeded)",                          //
                  "# Earlier Today",                                            //
                  "missed 01:00 missing (missed, because the computer was switched off or you weren’t logged in)",
                  "missed 02:00 missing (missed, because the previous run hadn’t ended)",  //
                  "FAILED 09:00 backup (2 s · exit code 1)",                               //
                  "= Now",                                                                 //
                  "runs unknown (running)",                                                //
                  "runs old (running since 19.11.2026, 00:00)",                            //
                  "runs 09:30 often (is being stopped)",                                   //
                  "# Repeat Interval", "often – 1 hour (next run 10:30)",                  //
                  "# Today", "22:00 backup"));
}

TEST_F(TimelinePastTest, DaysAreThoseOfTheZone) {
  // In Berlin the clocks are set back on 25 October 2026 at 03:00, so that this day has 25 hours.
  const double begin = seconds1970(sys_days(2026y / 10 / 24) + 22h);
  const struct {
    const char* job;
    double start;
  } runs[] = {{"before", begin - 0.25},
              {"first", begin},
              {"summer", begin + 2.5 * hourLength},
              {"winter", begin + 3.5 * hourLength},
              {"last", begin + 25 * hourLength - 0.25},
              {"after", begin + 25 * hourLength},
              {"oldest", begin - 24 * hourLength * 23},
              {"tooOld", begin - 24 * hourLength * 23 - 0.25}};
  for (const auto& run : runs) add(run.job, {exitedRun(run.start)});
  const auto timeline = built(sys_days(2026y / 11 / 1) + 12h, "Europe/Berlin");
  const auto shown = described(timeline);
  EXPECT_THAT(shown, ElementsAre("# Freitag, 2. Oktober 2026", "ok 00:00 oldest (2 s · succeeded)",   //
                                 "# Samstag, 24. Oktober 2026", "ok 23:59 before (2 s · succeeded)",  //
                                 "# Sonntag, 25. Oktober 2026", "ok 00:00 first (2 s · succeeded)",   //
                                 "ok 02:30 summer (2 s · succeeded)", "ok 02:30 winter (2 s · succeeded)",
                                 "ok 23:59 last (2 s · succeeded)",  //
                                 "# Montag, 26. Oktober 2026", "ok 00:00 after (2 s · succeeded)", "= Now"));
}

TEST_F(TimelinePastTest, SomeRunsAreLeftOut) {
  RunReport test = exitedRun(startOfSunday);
  test.cause = RunCause::Test;
  JobReport temporary = reportOf("temporary", "", {exitedRun(startOfSunday)});
  temporary.isTest = true;
  JobReport partial = reportOf("partial", "", {RunReport{.end = RunEnd{.code = 1}}});
  partial.isPartial = true;
  const double nothing = std::numeric_limits<double>::quiet_NaN(), infinite = std::numeric_limits<double>::infinity();
  add("test", {test});
  add("temporary", temporary);
  add("partial", partial);
  add("tomorrow", {exitedRun(startOfSunday + dayLength)});
  add("old", {exitedRun(startOfSunday - 31 * dayLength)});
  add("damaged", {RunReport{.start = nothing}, RunReport{.start = infinite}, RunReport{.start = -infinite}});
  reports["damaged"].missed = {{.time = nothing}, {.time = 1e300}};
  reports["damaged"].nextRun = nothing;
  reports["gone"] = reportOf("gone", "", {exitedRun(startOfSunday)});
  EXPECT_THAT(described(built()), IsEmpty());
}

TEST_F(TimelinePastTest, RunsOfOneJobThatFollowEachOtherAreFoldedWithinADay) {
  const auto owners = [&](const std::string& letters, double start) {
    std::map<char, std::vector<RunReport>> runs;
    for (std::size_t at = 0; at < letters.size(); ++at) {
      const char owner = static_cast<char>(std::tolower(letters[at]));
      const bool isFailure = letters[at] != owner;
      runs[owner].push_back(exitedRun(start + static_cast<double>(at) * 60, isFailure ? 1 : 0));
    }
    jobs.clear();
    for (const auto& [owner, ofOwner] : runs) add(std::string(1, owner), ofOwner);
  };
  const struct {
    const char* letters;
    double start;
    Rows rows;
  } table[] = {
      {"aa",
       9 * hourLength,
       {"# Earlier Today", "ok 09:00 a (2 s · succeeded)", "ok 09:01 a (2 s · succeeded)", "= Now"}},
      {"aaa", 9 * hourLength, {"# Earlier Today", "> ok 09:00 a (3 runs, 09:00 – 09:02)", "= Now"}},
      {"aaAabaaa",
       9 * hourLength,
       {"# Earlier Today", "> FAILED 09:00 a (4 runs, 09:00 – 09:03 · 1 failed)", "ok 09:04 b (2 s · succeeded)",
        "> ok 09:05 a (3 runs, 09:05 – 09:07)", "= Now"}},
      {"aaaaaa",
       -180,
       {"# Yesterday", "> ok 23:57 a (3 runs, 23:57 – 23:59)", "# Earlier Today",
        "> ok 00:00 a (3 runs, 00:00 – 00:02)", "= Now"}},
  };
  for (const auto& row : table) {
    owners(row.letters, startOfSunday + row.start);
    EXPECT_EQ(described(built()), row.rows) << row.letters;
  }
  jobs.clear();
  add("a", {exitedRun(startOfSunday)});
  reports["a"].missed = {{.time = startOfSunday + 60, .why = Why::Asleep},
                         {.time = startOfSunday + 120, .why = Why::Asleep}};
  EXPECT_THAT(described(built()),
              ElementsAre("# Earlier Today", "> 00:00 a (1 run, 00:00 – 00:02 · 2 missed)", "= Now"));
  reports["a"].runs.clear();
  reports["a"].missed.push_back({.time = startOfSunday + 180, .why = Why::Asleep});
  EXPECT_THAT(described(built()),
              ElementsAre("# Earlier Today", "> missed 00:01 a (3 missed, 00:01 – 00:03)", "= Now"));
  EXPECT_THAT(described(built(atTen, "UTC", [](const auto&, const auto&) { return true; })),
              ElementsAre("# Earlier Today", "v missed 00:01 a (3 missed, 00:01 – 00:03)",
                          "  missed 00:01 a (missed, because the computer slept)",
                          "  missed 00:02 a (missed, because the computer slept)",
                          "  missed 00:03 a (missed, because the computer slept)", "= Now"));
}

TEST_F(TimelinePastTest, ManyRunsAreInOrder) {
  std::mt19937 random(5);
  for (int job = 0; job < 40; ++job) {
    std::vector<RunReport> runs;
    for (int run = 0; run < 100; ++run) {
      runs.push_back(exitedRun(startOfSunday - 20 * dayLength + static_cast<double>(random() % (4 * 20 * 86400)) / 4));
    }
    add("job" + std::to_string(job), std::move(runs));
  }
  const auto timeline = built();
  double last = 0;
  std::size_t runs = 0;
  for (std::size_t row = 0; row < timeline.count(); ++row) {
    for (const PastEvent& event : timeline.row(row).events) {
      EXPECT_GE(event.time, last);
      last = event.time;
      ++runs;
    }
  }
  EXPECT_EQ(runs, 4000U);
}

TEST_F(TimelinePastTest, StretchesStayUnfoldedWhileTheyGrowAndWhenTheyAreSplit) {
  OpenFolds folds;
  folds.open("a", 30);
  const struct {
    const char* job;
    double first, last;
    bool isOpen;
  } rows[] = {{"a", 10, 30, true},  {"a", 20, 90, true},  {"a", 30, 30, true}, {"a", 31, 90, false},
              {"a", 10, 29, false}, {"b", 10, 30, false}, {"", 0, 99, false}};
  for (const auto& row : rows) EXPECT_EQ(folds.contains(row.job, row.first, row.last), row.isOpen) << &row - rows;
  folds.open("a", 90);
  folds.open("b", 30);
  folds.close("a", 20, 40);
  EXPECT_FALSE(folds.contains("a", 0, 89));
  EXPECT_TRUE(folds.contains("a", 0, 90));
  EXPECT_TRUE(folds.contains("b", 30, 30));
}

/// Rows to which reported changes are applied, as a view does.
class Mirror {
 public:
  explicit Mirror(Rows rows) : m_rows(std::move(rows)) {}

  void apply(const TimelineArray::Change& change, const Rows& current) {
    const auto at = [](std::size_t index) { return static_cast<std::ptrdiff_t>(index); };
    ASSERT_LE(change.first + change.removed, m_rows.size());
    m_rows.erase(m_rows.begin() + at(change.first), m_rows.begin() + at(change.first + change.removed));
    m_rows.insert(m_rows.begin() + at(change.first), current.begin() + at(change.first),
                  current.begin() + at(change.first + change.inserted));
    ASSERT_EQ(m_rows.size(), current.size());
  }
  const Rows& rows() const { return m_rows; }

 private:
  Rows m_rows;
};

TEST_F(TimelinePastTest, ChangedReportsYieldTheSameRowsAsANewTimelineAndReportEveryChange) {
  std::mt19937 random(11);
  const auto randomReport = [&](const std::string& label) {
    JobReport report = reportOf(label, "", {});
    for (auto run = random() % 6; run > 0; --run) {
      report.runs.push_back(
          exitedRun(startOfSunday - 2 * dayLength + static_cast<double>(random() % (58 * 60)) * 60, random() % 2));
    }
    if (random() % 3 == 0)
      report.missed.push_back({.time = startOfSunday - dayLength + static_cast<double>(random() % 1000)});
    return random() % 4 == 0 ? running(report, startOfSunday + 9.9 * hourLength + static_cast<double>(random() % 9))
                             : report;
  };
  for (const char* label : {"a", "b", "c"}) add(label);
  const TimelineArray::IsOpen isOpen = [](const auto& first, const auto&) { return first.owner == 1; };
  TimelineArray timeline = built(atTen, "UTC", isOpen);
  for (int round = 0; round < 400; ++round) {
    Mirror mirror(described(timeline));
    std::vector<TimelineArray::Report> changed;
    for (std::uint32_t owner = 0; owner < 3; ++owner) {
      if (random() % 2 == 0) continue;
      const std::string label = jobs[owner]->name;
      const bool isForgotten = random() % 5 == 0;
      reports[label] = isForgotten ? JobReport{} : randomReport(label);
      changed.push_back({owner, isForgotten ? nullptr : &reports[label]});
    }
    timeline.setReports(changed, isOpen, [&](const auto& change) { mirror.apply(change, described(timeline)); });
    const Rows expected = described(built(atTen, "UTC", isOpen));
    ASSERT_EQ(described(timeline), expected) << round;
    ASSERT_EQ(mirror.rows(), expected) << round;
    ASSERT_EQ(timeline.groups(), built(atTen, "UTC", isOpen).groups());
  }
}

TEST_F(TimelinePastTest, RunsWhoseTimeHasComeVanishWithTheHeadersOfTheirDays) {
  add("a", {}, {{"StartCalendarInterval", Dictionary{{"Hour", 11}, {"Minute", 0}}}});
  add("b", {}, {{"StartCalendarInterval", Dictionary{{"Day", 22}, {"Hour", 10}, {"Minute", 1}}}});
  TimelineArray timeline = built();
  const struct {
    sys_seconds now;
    std::vector<TimelineArray::Change> changes;
    const char* firstRow;
    sys_seconds next;
  } steps[] = {
      {atTen + 59s, {}, "10:01 b", atTen + 60s},
      {atTen + 60s, {{1, 1, 0}}, "11:00 a", atTen + 1h},
      {atTen + 1h, {{0, 2, 0}}, "11:00 a", sys_days(2026y / 11 / 23)},
      {atTen + 26h, {{0, 2, 0}}, "11:00 a", sys_days(2026y / 11 / 23)},
  };
  for (const auto& step : steps) {
    std::vector<TimelineArray::Change> changes;
    timeline.advance(step.now, [&](const auto& change) { changes.push_back(change); });
    EXPECT_EQ(changes, step.changes);
    EXPECT_EQ(described(timeline, 1), step.firstRow);
    EXPECT_EQ(timeline.nextChange(), step.next);
  }
}

}  // namespace
}  // namespace mirvel
