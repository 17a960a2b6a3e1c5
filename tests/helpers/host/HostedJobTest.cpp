#include "helpers/host/HostedJob.h"

#include <gmock/gmock.h>

#include <csignal>

#include "helpers/host/VirtualMachine.h"

namespace mirvel::host {
namespace {

using namespace std::chrono;
using Seconds = std::vector<long>;
using testing::ElementsAre;

struct Row {
  const char* keys;
  std::optional<seconds> duration;
  ProcessEnd end;
  long until;
  Seconds starts;
};

constexpr ProcessEnd success{0, 0};
constexpr ProcessEnd failure{3, 0};
constexpr ProcessEnd crash{0, SIGSEGV};
constexpr ProcessEnd killed{0, SIGTERM};

TEST(HostedJob, StartsWhenItsKeysSaySo) {
  const Row rows[] = {
      {"", 1s, success, 100, {}},
      {"<key>RunAtLoad</key><true/>", 1s, success, 100, {0}},
      {"<key>RunAtLoad</key><false/>", 1s, success, 100, {}},
      // Started again no sooner than the throttle interval after the last start.
      {"<key>KeepAlive</key><true/>", 1s, success, 35, {0, 10, 20, 30}},
      {"<key>KeepAlive</key><true/>", 25s, failure, 60, {0, 25, 50}},
      {"<key>KeepAlive</key><true/><key>ThrottleInterval</key><integer>4</integer>", 1s, success, 10, {0, 4, 8}},
      {"<key>KeepAlive</key><true/><key>ThrottleInterval</key><integer>-4</integer>", 1s, success, 15, {0, 10}},
      {"<key>KeepAlive</key><true/><key>ThrottleInterval</key><integer>0</integer>", 0s, failure, 3, {0, 1, 2, 3}},
      {"<key>OnDemand</key><false/>", 1s, success, 15, {0, 10}},
      {"<key>OnDemand</key><false/><key>KeepAlive</key><false/>", 1s, success, 15, {0, 10}},
      {"<key>KeepAlive</key><true/><key>LaunchOnlyOnce</key><true/>", 1s, success, 100, {0}},
      {"<key>KeepAlive</key><dict><key>SuccessfulExit</key><true/></dict>", 1s, success, 15, {0, 10}},
      {"<key>KeepAlive</key><dict><key>SuccessfulExit</key><true/></dict>", 1s, failure, 15, {0}},
      {"<key>KeepAlive</key><dict><key>SuccessfulExit</key><false/></dict>", 1s, success, 15, {0}},
      {"<key>KeepAlive</key><dict><key>SuccessfulExit</key><false/></dict>", 1s, failure, 15, {0, 10}},
      {"<key>KeepAlive</key><dict><key>SuccessfulExit</key><false/></dict>", 1s, crash, 15, {0, 10}},
      {"<key>KeepAlive</key><dict><key>Crashed</key><true/></dict>", 1s, crash, 15, {}},
      {"<key>RunAtLoad</key><true/><key>KeepAlive</key><dict><key>Crashed</key><true/></dict>", 1s, crash, 15, {0, 10}},
      {"<key>RunAtLoad</key><true/><key>KeepAlive</key><dict><key>Crashed</key><true/></dict>", 1s, killed, 15, {0}},
      {"<key>RunAtLoad</key><true/><key>KeepAlive</key><dict><key>Crashed</key><false/></dict>",
       1s,
       killed,
       15,
       {0, 10}},
      {"<key>RunAtLoad</key><true/><key>KeepAlive</key><dict><key>Crashed</key><false/></dict>", 1s, crash, 15, {0}},
      // The first time comes an interval after loading; one that comes while the job runs is missed.
      {"<key>StartInterval</key><integer>30</integer>", 1s, success, 100, {30, 60, 90}},
      {"<key>StartInterval</key><integer>30</integer>", 45s, success, 200, {30, 90, 150}},
      {"<key>StartInterval</key><integer>3</integer>", 1s, success, 30, {3, 13, 23}},
      {"<key>StartInterval</key><integer>0</integer>", 1s, success, 100, {}},
      {"<key>StartInterval</key><integer>9223372036854775807</integer>", 1s, success, 100, {}},
      {"<key>StartCalendarInterval</key><dict/>", 1s, success, 150, {60, 120}},
      {"<key>StartCalendarInterval</key><dict><key>Minute</key><integer>2</integer></dict>",
       1s,
       success,
       4000,
       {120, 3720}},
      {"<key>StartCalendarInterval</key><array><dict><key>Minute</key><integer>2</integer></dict><dict><key>Minute</"
       "key>"
       "<integer>5</integer></dict></array>",
       1s,
       success,
       1000,
       {120, 300}},
      {"<key>StartCalendarInterval</key><dict><key>Hour</key><integer>24</integer></dict>", 1s, success, 100000, {}},
      {"<key>StartCalendarInterval</key><dict/><key>LaunchOnlyOnce</key><true/>", 1s, success, 300, {60}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.keys);
    VirtualMachine machine(row.keys);
    machine.duration = row.duration;
    machine.end = row.end;
    machine.load();
    machine.runUntil(row.until);
    EXPECT_EQ(machine.starts, row.starts);
  }
}

TEST(HostedJob, RunsOnceOnWakingForAllThatTheSleepMissed) {
  VirtualMachine interval("<key>StartInterval</key><integer>60</integer>");
  interval.load();
  interval.sleepUntil(1000);
  interval.runUntil(1100);
  EXPECT_THAT(interval.starts, ElementsAre(1000, 1020, 1080));

  VirtualMachine calendar("<key>StartCalendarInterval</key><dict><key>Minute</key><integer>0</integer></dict>");
  calendar.load();
  calendar.sleepUntil(3 * 3600 + 100);
  calendar.runUntil(4 * 3600 + 100);
  EXPECT_THAT(calendar.starts, ElementsAre(3 * 3600 + 100, 4 * 3600));
}

TEST(HostedJob, FindsItsTimeAnewWhenTheClockIsSet) {
  const std::string atTwo =
      "<key>StartCalendarInterval</key><dict><key>Hour</key><integer>2</integer><key>Minute</key>"
      "<integer>0</integer></dict>";
  VirtualMachine later(atTwo);
  later.load();
  later.setClock(hours(3));  // past its time: nothing was missed, it is for tomorrow
  later.runUntil(24 * 3600);
  EXPECT_THAT(later.starts, ElementsAre(23 * 3600));

  VirtualMachine earlier(atTwo);
  earlier.load();
  earlier.setClock(-hours(1));
  earlier.runUntil(5 * 3600);
  EXPECT_THAT(earlier.starts, ElementsAre(3 * 3600));
}

TEST(HostedJob, RunsOnceADayHoweverTheClockIsPutRight) {
  const std::string atTwo =
      "<key>StartCalendarInterval</key><dict><key>Hour</key><integer>2</integer><key>Minute</key>"
      "<integer>0</integer></dict>";
  constexpr long two = 2 * 3600, day = 24 * 3600;
  const struct {
    long when;
    seconds by;
    Seconds starts;
  } rows[] = {
      {two - 1, 2s, {two - 1, two + day - 2}},  // over the time
      {two + 1, -2s, {two, two + day + 2}},     // back to before it
      {two - 3, 2s, {two - 2, two + day - 2}},  // towards it
      {two + 9, -1s, {two, two + day + 1}},     // after it
      {two - 60, 10min, {two - 60, two + day - 600}}, {two + 60, -10min, {two, two + day + 600}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.when);
    VirtualMachine machine(atTwo);
    machine.load();
    machine.runUntil(row.when);
    machine.setClock(row.by);
    machine.runUntil(two + day + 1200);
    EXPECT_EQ(machine.starts, row.starts);
  }
}

TEST(HostedJob, IsTriedAgainWhenThereWasNoRoomForIt) {
  VirtualMachine machine("<key>RunAtLoad</key><true/><key>LaunchOnlyOnce</key><true/>");
  machine.failures = 2;
  machine.load();
  machine.runUntil(100);
  EXPECT_THAT(machine.starts, ElementsAre(20)) << "after the throttle interval each time";
}

TEST(HostedJob, EndsWhatItsProcessHasLeftBeforeItIsStartedAgain) {
  VirtualMachine machine("<key>KeepAlive</key><true/><key>ExitTimeOut</key><integer>15</integer>");
  machine.left = 1000s;
  machine.load();
  machine.runUntil(10);
  EXPECT_THAT(machine.stops, ElementsAre("TERM 1"));
  machine.runUntil(17);
  EXPECT_THAT(machine.stops, ElementsAre("TERM 1", "KILL 16"));
  EXPECT_THAT(machine.starts, ElementsAre(0)) << "it would run twice";
  machine.clear();
  machine.runUntil(18);
  EXPECT_THAT(machine.starts, ElementsAre(0, 17));

  VirtualMachine inherits("<key>RunAtLoad</key><true/>");
  inherits.left = 4s;
  inherits.loadWithRemains();
  inherits.runUntil(30);
  EXPECT_EQ(inherits.stops.front(), "TERM 0");
  ASSERT_FALSE(inherits.starts.empty());
  EXPECT_EQ(inherits.starts.front(), 4);
}

TEST(HostedJob, MissesNoTimeWhileItEndsWhatWasLeft) {
  VirtualMachine machine("<key>StartCalendarInterval</key><dict/>");
  machine.left = 15s;
  machine.duration = 50s;  // from 60 to 110, and the rest to 125
  machine.load();
  machine.runUntil(130);
  EXPECT_THAT(machine.starts, ElementsAre(60, 125));
}

TEST(HostedJob, FollowsTheLocalTimeOverAChangeOfTheOffset) {
  const sys_seconds evening = sys_days(2026y / March / 28) + 23h;  // midnight in Berlin
  VirtualMachine machine("<key>StartCalendarInterval</key><dict><key>Minute</key><integer>30</integer></dict>", evening,
                         "Europe/Berlin");
  machine.load();
  EXPECT_EQ(machine.job().nextRun(machine.now), evening + 30min);
  machine.runUntil(4 * 3600);
  EXPECT_THAT(machine.starts, ElementsAre(1800, 5400, 9000, 12600));
}

TEST(HostedJob, FollowsPathsAndOtherJobs) {
  struct ConditionRow {
    const char* keys;
    const char* subject;
    bool isStartedBefore;
    bool isStartedAfter;
  };
  const ConditionRow rows[] = {
      {"<key>KeepAlive</key><dict><key>PathState</key><dict><key>/x</key><true/></dict></dict>", "/x", false, true},
      {"<key>KeepAlive</key><dict><key>PathState</key><dict><key>/x</key><false/></dict></dict>", "/x", true, false},
      {"<key>KeepAlive</key><dict><key>OtherJobEnabled</key><dict><key>b</key><true/></dict></dict>", "b", false, true},
      {"<key>KeepAlive</key><dict><key>OtherJobEnabled</key><dict><key>b</key><false/></dict></dict>", "b", true,
       false},
      {"<key>KeepAlive</key><dict><key>PathState</key><dict><key>/x</key><true/></dict><key>AfterInitialDemand</key>"
       "<true/></dict>",
       "/x", false, false},
      {"<key>QueueDirectories</key><array><string>/q</string></array>", "/q", false, true},
      {"<key>WatchPaths</key><array><string>/w</string></array>", "/w", false, false},
  };
  for (const ConditionRow& row : rows) {
    SCOPED_TRACE(row.keys);
    VirtualMachine machine(row.keys);
    machine.load();
    machine.runUntil(15);
    EXPECT_EQ(!machine.starts.empty(), row.isStartedBefore);
    machine.starts.clear();
    machine.there.insert(row.subject);
    machine.settle();
    machine.runUntil(40);
    EXPECT_EQ(!machine.starts.empty(), row.isStartedAfter);
  }
}

TEST(HostedJob, RunsAgainForAChangeThatComesWhileItRuns) {
  VirtualMachine machine("<key>WatchPaths</key><array><string>/w</string></array>");
  machine.duration = 5s;
  machine.load();
  machine.runUntil(3);
  machine.job().watchedPathChanged();
  machine.settle();
  machine.runUntil(5);
  machine.job().watchedPathChanged();
  machine.job().watchedPathChanged();
  machine.settle();
  machine.runUntil(60);
  EXPECT_THAT(machine.starts, ElementsAre(3, 13));
}

TEST(HostedJob, StartsOnMountOnlyIfItAsksForThat) {
  for (const bool asks : {true, false}) {
    VirtualMachine machine(asks ? "<key>StartOnMount</key><true/>" : "<key>StartOnMount</key><false/>");
    machine.load();
    machine.runUntil(3);
    machine.job().mounted();
    machine.settle();
    EXPECT_EQ(machine.starts, asks ? Seconds{3} : Seconds{});
  }
}

TEST(HostedJob, IsStoppedByForceOnlyAfterItsTime) {
  struct StopRow {
    const char* keys;
    std::optional<seconds> duration;
    std::vector<std::string> stops;
  };
  const StopRow rows[] = {
      {"<key>RunAtLoad</key><true/>", {}, {"TERM 5", "KILL 25"}},
      {"<key>RunAtLoad</key><true/><key>ExitTimeOut</key><integer>1</integer>", {}, {"TERM 5", "KILL 6"}},
      {"<key>RunAtLoad</key><true/><key>ExitTimeOut</key><integer>0</integer>", {}, {"TERM 5", "KILL 35"}},
      {"<key>RunAtLoad</key><true/><key>KeepAlive</key><true/>", 8s, {"TERM 5", "forgotten 8"}},
      {"<key>RunAtLoad</key><true/>", 1s, {"forgotten 5"}},
      {"<key>StartInterval</key><integer>7</integer>", 1s, {"forgotten 5"}},
  };
  for (const StopRow& row : rows) {
    SCOPED_TRACE(row.keys);
    VirtualMachine machine(row.keys);
    machine.duration = row.duration;
    machine.load();
    machine.runUntil(5);
    machine.unload();
    const auto starts = machine.starts;
    machine.runUntil(row.stops.back().starts_with("forgotten") ? 8 : 100);
    EXPECT_EQ(machine.stops, row.stops);
    EXPECT_EQ(machine.starts, starts) << "an unloaded job is never started";
  }
}

jobfile::Plist jobWith(const std::string& keys) {
  auto plist =
      jobfile::Plist::readTolerantly("<plist><dict><key>Label</key><string>job</string>" + keys + "</dict></plist>");
  EXPECT_TRUE(plist) << keys;
  return plist ? *std::move(plist) : jobfile::Plist();
}

TEST(JobRules, AnIntervalWithATimeThatCannotBeUsedIsNotTakenForOneThatComesMoreOften) {
  const std::string noon = "<dict><key>Hour</key><integer>12</integer><key>Minute</key><integer>0</integer></dict>";
  const std::string wrong = "<dict><key>Hour</key><string>noon</string><key>Minute</key><integer>0</integer></dict>";
  const CalendarRule atNoon = CalendarRule::asRun({.minute = 0, .hour = 12});
  const struct {
    std::string interval;
    std::vector<CalendarRule> rules;
  } rows[] = {{noon, {atNoon}},
              {wrong, {}},
              {"<array>" + wrong + noon + "</array>", {atNoon}},
              {"<array>" + noon + wrong + wrong + "</array>", {atNoon}},
              {"<array><string>no interval</string>" + wrong + noon + "</array>", {atNoon}},
              {"<dict><key>Comment</key><true/></dict>", {CalendarRule::asRun({})}},
              {"<string>noon</string>", {}}};
  for (const auto& row : rows) {
    const auto rules = JobRules::of(jobWith("<key>StartCalendarInterval</key>" + row.interval));
    EXPECT_TRUE(rules.calendar == row.rules) << row.interval;
  }
}

TEST(JobRules, NoJobRunsAnotherCommandOrHasMoreRightsThanItsFileWants) {
  constexpr uid_t root = 0, user = 501;
  const struct {
    const char* keys;
    std::vector<uid_t> refused;  ///< for whom
  } rows[] = {{"<key>Program</key><integer>5</integer>", {root, user}},
              {"<key>ProgramArguments</key><array><string>a</string><integer>5</integer></array>", {root, user}},
              {"<key>ProgramArguments</key><string>a</string>", {root, user}},
              {"<key>WorkingDirectory</key><integer>5</integer>", {root, user}},
              {"<key>UserName</key><integer>501</integer>", {root}},  // another has the user's rights anyway
              {"<key>GroupName</key><true/>", {root}},
              {"<key>RootDirectory</key><array/>", {root}},
              {"<key>Umask</key><string>u=rwx</string>", {root}},
              {"<key>Umask</key><string>077</string>", {}},
              {"<key>UserName</key><string>nobody</string>", {}},
              {"<key>Nice</key><string>much</string>", {}},
              {"<key>Disabled</key><string>no</string>", {}}};
  for (const auto& row : rows) {
    std::vector<uid_t> refused;
    for (const uid_t who : {root, user}) {
      if (!checkRunnable(jobWith(row.keys), who)) refused.push_back(who);
    }
    EXPECT_EQ(refused, row.refused) << row.keys;
  }
}

}  // namespace
}  // namespace mirvel::host
