#include "helpers/host/HostedJob.h"

#include <gmock/gmock.h>

#include <csignal>
#include <functional>

#include "helpers/host/VirtualMachine.h"

namespace mirvel::host {
namespace {

using namespace std::chrono;
using propertylist::Array;
using propertylist::Dictionary;
using propertylist::Value;
using Seconds = std::vector<long>;
using testing::ElementsAre;

struct Row {
  Dictionary keys;
  std::optional<seconds> duration;
  ProcessEnd end;
  long until;
  Seconds starts;
};

constexpr ProcessEnd success{0, 0};
constexpr ProcessEnd failure{3, 0};
constexpr ProcessEnd crash{0, SIGSEGV};
constexpr ProcessEnd killed{0, SIGTERM};

const Dictionary everyMinute{}, atTwoPast{{"Minute", 2}}, atFivePast{{"Minute", 5}};
const Dictionary everyDayAtTwo{{"StartCalendarInterval", Dictionary{{"Hour", 2}, {"Minute", 0}}}};

Dictionary keepAlive(const char* condition, Value value, bool runAtLoad = false) {
  Dictionary keys{{"KeepAlive", Dictionary{{condition, std::move(value)}}}};
  if (runAtLoad) keys.set("RunAtLoad", true);
  return keys;
}

TEST(HostedJob, StartsWhenItsKeysSaySo) {
  const Row rows[] = {
      {{}, 1s, success, 100, {}},
      {{{"RunAtLoad", true}}, 1s, success, 100, {0}},
      {{{"RunAtLoad", false}}, 1s, success, 100, {}},
      // It starts again one throttle interval after the previous start.
      {{{"KeepAlive", true}}, 1s, success, 35, {0, 10, 20, 30}},
      {{{"KeepAlive", true}}, 25s, failure, 60, {0, 25, 50}},
      {{{"KeepAlive", true}, {"ThrottleInterval", 4}}, 1s, success, 10, {0, 4, 8}},
      {{{"KeepAlive", true}, {"ThrottleInterval", -4}}, 1s, success, 15, {0, 10}},
      {{{"KeepAlive", true}, {"ThrottleInterval", 0}}, 0s, failure, 3, {0, 1, 2, 3}},
      {{{"OnDemand", false}}, 1s, success, 15, {0, 10}},
      {{{"OnDemand", false}, {"KeepAlive", false}}, 1s, success, 15, {0, 10}},
      {{{"KeepAlive", true}, {"LaunchOnlyOnce", true}}, 1s, success, 100, {0}},
      {keepAlive("SuccessfulExit", true), 1s, success, 15, {0, 10}},
      {keepAlive("SuccessfulExit", true), 1s, failure, 15, {0}},
      {keepAlive("SuccessfulExit", false), 1s, success, 15, {0}},
      {keepAlive("SuccessfulExit", false), 1s, failure, 15, {0, 10}},
      {keepAlive("SuccessfulExit", false), 1s, crash, 15, {0, 10}},
      {keepAlive("Crashed", true), 1s, crash, 15, {}},
      {keepAlive("Crashed", true, true), 1s, crash, 15, {0, 10}},
      {keepAlive("Crashed", true, true), 1s, killed, 15, {0}},
      {keepAlive("Crashed", false, true), 1s, killed, 15, {0, 10}},
      {keepAlive("Crashed", false, true), 1s, crash, 15, {0}},
      // The first start is one interval after loading; a time that comes while the job runs is skipped.
      {{{"StartInterval", 30}}, 1s, success, 100, {30, 60, 90}},
      {{{"StartInterval", 30}}, 45s, success, 200, {30, 90, 150}},
      {{{"StartInterval", 3}}, 1s, success, 30, {3, 13, 23}},
      {{{"StartInterval", 0}}, 1s, success, 100, {}},
      {{{"StartInterval", INT64_MAX}}, 1s, success, 100, {}},
      {{{"StartCalendarInterval", everyMinute}}, 1s, success, 150, {60, 120}},
      {{{"StartCalendarInterval", atTwoPast}}, 1s, success, 4000, {120, 3720}},
      {{{"StartCalendarInterval", Array{atTwoPast, atFivePast}}}, 1s, success, 1000, {120, 300}},
      {{{"StartCalendarInterval", Dictionary{{"Hour", 24}}}}, 1s, success, 100000, {}},
      {{{"StartCalendarInterval", everyMinute}, {"LaunchOnlyOnce", true}}, 1s, success, 300, {60}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(fileOf(row.keys));
    VirtualMachine machine(row.keys);
    machine.duration = row.duration;
    machine.outcome = row.end;
    machine.load();
    machine.runUntil(row.until);
    EXPECT_EQ(machine.starts, row.starts);
  }
}

TEST(HostedJob, RunsOnceOnWakingForAllTimesThatPassedDuringSleep) {
  VirtualMachine interval({{"StartInterval", 60}});
  interval.load();
  interval.sleepUntil(1000);
  interval.runUntil(1100);
  EXPECT_THAT(interval.starts, ElementsAre(1000, 1020, 1080));

  VirtualMachine calendar({{"StartCalendarInterval", Dictionary{{"Minute", 0}}}});
  calendar.load();
  calendar.sleepUntil(3 * 3600 + 100);
  calendar.runUntil(4 * 3600 + 100);
  EXPECT_THAT(calendar.starts, ElementsAre(3 * 3600 + 100, 4 * 3600));
}

TEST(HostedJob, FollowsTheClockWhenItIsSet) {
  constexpr long two = 2 * 3600, day = 24 * 3600, end = two + day + 1200;
  const struct {
    long when;
    seconds by;
    Seconds starts;
  } rows[] = {
      // Less than an hour is a correction: the run of that day is neither skipped nor repeated.
      {two - 1, 2s, {two - 1, two + day - 2}},  // past the time
      {two + 1, -2s, {two, two + day + 2}},     // back before it
      {two - 3, 2s, {two - 2, two + day - 2}},  // towards it
      {two + 9, -1s, {two, two + day + 1}},     // after it
      {two - 60, 10min, {two - 60, two + day - 600}},
      {two + 60, -10min, {two, two + day + 600}},
      // After a larger change, the next run is computed again, and nothing counts as missed.
      {0, 3h, {two + day - 3 * 3600}},
      {0, -1h, {two + 3600}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.when);
    VirtualMachine machine(everyDayAtTwo);
    machine.load();
    EXPECT_EQ(machine.job().nextRun(machine.now), sys_seconds(2h));
    machine.runUntil(row.when);
    machine.setClock(row.by);
    machine.runUntil(end);
    EXPECT_EQ(machine.starts, row.starts);
  }
}

TEST(HostedJob, IsTriedAgainAfterATemporaryFailureToStart) {
  VirtualMachine machine({{"RunAtLoad", true}, {"LaunchOnlyOnce", true}});
  machine.failures = 2;
  machine.load();
  machine.runUntil(100);
  EXPECT_THAT(machine.starts, ElementsAre(20)) << "after the throttle interval each time";
}

TEST(HostedJob, StopsTheRemainingProcessesBeforeItStartsAgain) {
  VirtualMachine machine({{"KeepAlive", true}, {"ExitTimeOut", 15}});
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

  VirtualMachine inherits({{"RunAtLoad", true}});
  inherits.left = 4s;
  inherits.loadWithRemains();
  inherits.runUntil(30);
  EXPECT_EQ(inherits.stops.front(), "TERM 0");
  ASSERT_FALSE(inherits.starts.empty());
  EXPECT_EQ(inherits.starts.front(), 4);
}

TEST(HostedJob, SkipsNoTimeWhileItStopsTheRemainingProcesses) {
  VirtualMachine machine({{"StartCalendarInterval", everyMinute}});
  machine.left = 15s;
  machine.duration = 50s;  // from 60 to 110, and the remaining processes to 125
  machine.load();
  machine.runUntil(130);
  EXPECT_THAT(machine.starts, ElementsAre(60, 125));
}

TEST(HostedJob, FollowsPathsAndOtherJobs) {
  const auto state = [](bool isWanted) { return Dictionary{{"x", isWanted}}; };
  const struct {
    Dictionary keys;
    bool isStartedBefore;  ///< before "x" exists, is loaded or holds files
    bool isStartedAfter;
  } rows[] = {
      {keepAlive("PathState", state(true)), false, true},
      {keepAlive("PathState", state(false)), true, false},
      {keepAlive("OtherJobEnabled", state(true)), false, true},
      {keepAlive("OtherJobEnabled", state(false)), true, false},
      {{{"KeepAlive", Dictionary{{"PathState", state(true)}, {"AfterInitialDemand", true}}}}, false, false},
      {{{"QueueDirectories", Array{"x"}}}, false, true},
      {{{"WatchPaths", Array{"x"}}}, false, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(fileOf(row.keys));
    VirtualMachine machine(row.keys);
    machine.load();
    machine.runUntil(15);
    EXPECT_EQ(!machine.starts.empty(), row.isStartedBefore);
    machine.starts.clear();
    machine.there.insert("x");
    machine.settle();
    machine.runUntil(40);
    EXPECT_EQ(!machine.starts.empty(), row.isStartedAfter);
  }
}

TEST(HostedJob, RunsAgainForAChangeWhileItRuns) {
  VirtualMachine machine({{"WatchPaths", Array{"/w"}}});
  machine.duration = 5s;
  machine.load();
  for (const long second : {3, 5, 5}) {
    machine.runUntil(second);
    machine.job().watchedPathChanged();
    machine.settle();
  }
  machine.runUntil(60);
  EXPECT_THAT(machine.starts, ElementsAre(3, 13));
}

TEST(HostedJob, StartsOnMountOnlyWithThatKey) {
  for (const bool hasKey : {true, false}) {
    VirtualMachine machine({{"StartOnMount", hasKey}});
    machine.load();
    machine.runUntil(3);
    machine.job().mounted();
    machine.settle();
    EXPECT_EQ(machine.starts, hasKey ? Seconds{3} : Seconds{});
  }
}

TEST(HostedJob, IsKilledOnlyAfterItsExitTimeOut) {
  const struct {
    Dictionary keys;
    std::optional<seconds> duration;
    std::vector<std::string> stops;
  } rows[] = {
      {{{"RunAtLoad", true}}, {}, {"TERM 5", "KILL 25"}},
      {{{"RunAtLoad", true}, {"ExitTimeOut", 1}}, {}, {"TERM 5", "KILL 6"}},
      {{{"RunAtLoad", true}, {"ExitTimeOut", 0}}, {}, {"TERM 5", "KILL 35"}},
      {{{"RunAtLoad", true}, {"KeepAlive", true}}, 8s, {"TERM 5", "forgotten 8"}},
      {{{"RunAtLoad", true}}, 1s, {"forgotten 5"}},
      {{{"StartInterval", 7}}, 1s, {"forgotten 5"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(fileOf(row.keys));
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

TEST(HostedJob, SaysWhyItStarts) {
  using Cause = RunCause;
  const struct {
    Dictionary keys;
    std::function<void(VirtualMachine&)> event;  ///< at 5 s
    std::vector<Cause> causes;                   ///< within 70 s
  } rows[] = {
      {{{"RunAtLoad", true}}, {}, {Cause::Load}},
      {{{"RunAtLoad", true}, {"StartInterval", 60}}, {}, {Cause::Load, Cause::Interval}},
      {{{"StartCalendarInterval", everyMinute}}, {}, {Cause::Calendar}},
      {{{"KeepAlive", true}, {"ThrottleInterval", 50}}, {}, {Cause::KeepAlive, Cause::KeepAlive}},
      {{{"RunAtLoad", true}, {"KeepAlive", true}, {"ThrottleInterval", 50}}, {}, {Cause::Load, Cause::KeepAlive}},
      {{{"WatchPaths", Array{"/w"}}}, [](auto& machine) { machine.job().watchedPathChanged(); }, {Cause::WatchedPath}},
      {{{"StartOnMount", true}}, [](auto& machine) { machine.job().mounted(); }, {Cause::Mount}},
      {{{"QueueDirectories", Array{"/q"}}, {"ThrottleInterval", 100}},
       [](auto& machine) { machine.there.insert("/q"); },
       {Cause::QueueDirectory}},
      {{}, [](auto& machine) { machine.job().request(); }, {Cause::Request}},
      // The first cause counts, and a request before all others.
      {{{"RunAtLoad", true}, {"StartInterval", 15}, {"WatchPaths", Array{"/w"}}, {"ThrottleInterval", 20}},
       [](auto& machine) { machine.job().watchedPathChanged(); },
       {Cause::Load, Cause::WatchedPath, Cause::Interval, Cause::Interval}},
      {{{"RunAtLoad", true}, {"WatchPaths", Array{"/w"}}},
       [](auto& machine) {
         machine.job().watchedPathChanged();
         machine.job().request();
       },
       {Cause::Load, Cause::Request}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(fileOf(row.keys));
    VirtualMachine machine(row.keys);
    machine.load();
    machine.runUntil(5);
    if (row.event) row.event(machine);
    machine.settle();
    machine.runUntil(70);
    EXPECT_EQ(machine.causes, row.causes);
  }
}

TEST(HostedJob, StartsOnRequestAtOnceAndThrottlesTheNextStart) {
  VirtualMachine machine({{"KeepAlive", true}, {"LaunchOnlyOnce", true}});
  machine.load();
  machine.runUntil(4);
  machine.request();
  EXPECT_THAT(machine.starts, ElementsAre(0, 4)) << "whatever the throttle interval and LaunchOnlyOnce say";
  machine.request();
  machine.runUntil(60);
  EXPECT_THAT(machine.starts, ElementsAre(0, 4)) << "it was running";

  VirtualMachine throttled({{"KeepAlive", true}});
  throttled.load();
  throttled.runUntil(4);
  throttled.request();
  throttled.runUntil(25);
  EXPECT_THAT(throttled.starts, ElementsAre(0, 4, 14, 24)) << "the throttle interval counts from the request";

  VirtualMachine scarce({});
  scarce.failures = 1;
  scarce.load();
  scarce.request();
  scarce.runUntil(60);
  EXPECT_THAT(scarce.starts, ElementsAre()) << "the request has failed, and isn't repeated later";
}

TEST(HostedJob, StopsAndRestarts) {
  using Calls = std::vector<void (VirtualMachine::*)()>;
  constexpr auto request = &VirtualMachine::request, stop = &VirtualMachine::stop, restart = &VirtualMachine::restart,
                 end = &VirtualMachine::end, unload = &VirtualMachine::unload;
  const struct {
    Dictionary keys;
    Calls calls;  ///< each second from 20 on
    std::vector<std::string> stops;
    Seconds starts;  ///< until 100
  } rows[] = {
      {{{"RunAtLoad", true}}, {stop, end}, {"TERM 20"}, {0}},
      {{{"RunAtLoad", true}}, {stop, stop, end}, {"TERM 20"}, {0}},
      {{{"RunAtLoad", true}}, {stop}, {"TERM 20", "KILL 40"}, {0}},
      {{{"RunAtLoad", true}, {"ExitTimeOut", 3}}, {stop, stop, stop}, {"TERM 20", "KILL 23"}, {0}},
      {{{"KeepAlive", true}}, {stop, end}, {"TERM 20"}, {0, 21}},
      {{{"KeepAlive", true}, {"ThrottleInterval", 30}}, {stop, end}, {"TERM 20"}, {0, 30}},
      {{{"KeepAlive", true}, {"ThrottleInterval", 30}}, {restart, end}, {"TERM 20"}, {0, 21}},
      {{{"RunAtLoad", true}}, {restart, end}, {"TERM 20"}, {0, 21}},
      {{{"RunAtLoad", true}}, {stop, request, end}, {"TERM 20"}, {0, 22}},
      {{{"RunAtLoad", true}}, {restart, stop, end}, {"TERM 20"}, {0}},
      {{{"RunAtLoad", true}}, {request, end}, {}, {0}},
      {{{"RunAtLoad", true}}, {stop, unload, end}, {"TERM 20", "forgotten 22"}, {0}},
      {{{"RunAtLoad", true}}, {restart, unload, end}, {"TERM 20", "forgotten 22"}, {0}},
      {{}, {stop}, {}, {}},
      {{}, {restart}, {}, {20}},
      {{}, {request, request}, {}, {20}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(fileOf(row.keys) + std::to_string(&row - rows));
    VirtualMachine machine(row.keys);
    machine.duration.reset();
    machine.load();
    machine.runUntil(20);
    for (std::size_t i = 0; i < row.calls.size(); ++i) {
      machine.runUntil(20 + static_cast<long>(i));
      (machine.*row.calls[i])();
    }
    machine.runUntil(100);
    EXPECT_EQ(machine.stops, row.stops);
    EXPECT_EQ(machine.starts, row.starts);
  }
}

TEST(HostedJob, AStopAlsoEndsWhatTheGroupHasLeft) {
  VirtualMachine machine({{"RunAtLoad", true}});
  machine.left = 1000s;
  machine.load();
  machine.runUntil(3);
  EXPECT_FALSE(machine.job().isStopped()) << "only its group is stopped";
  machine.stop();
  EXPECT_TRUE(machine.job().isStopped());
  EXPECT_THAT(machine.stops, ElementsAre("TERM 1", "TERM 3"));
  machine.runUntil(30);
  EXPECT_EQ(machine.stops.back(), "KILL 21") << "as long after the first signal";
  machine.clear();
  EXPECT_FALSE(machine.job().isStopped());
}

TEST(HostedJob, KnowsTheTimesAtWhichItDidNotRun) {
  const Dictionary everyHour{{"StartCalendarInterval", Dictionary{{"Minute", 0}}}};
  constexpr long hour = 3600;
  VirtualMachine sleeper(everyHour);
  sleeper.load();
  sleeper.sleepUntil(3 * hour + 100);
  EXPECT_THAT(sleeper.missed(), ElementsAre("01:00 asleep", "02:00 asleep")) << "it runs for the third one";
  sleeper.runUntil(5 * hour);
  EXPECT_THAT(sleeper.missed(), ElementsAre());

  VirtualMachine busy(everyHour);
  busy.duration = 90min;
  busy.load();
  busy.runUntil(3 * hour + 10);
  EXPECT_THAT(busy.missed(), ElementsAre("02:00 running"));
  busy.sleepUntil(6 * hour + 10);
  EXPECT_THAT(busy.missed(), ElementsAre("04:00 asleep", "05:00 asleep"));

  VirtualMachine interval({{"StartInterval", 600}});
  interval.duration = 25min;
  interval.load();
  interval.runUntil(hour);
  EXPECT_THAT(interval.missed(), ElementsAre("00:20 running", "00:30 running", "00:50 running", "01:00 running"));

  VirtualMachine once({{"StartInterval", 600}, {"LaunchOnlyOnce", true}});
  once.duration = 25min;
  once.load();
  EXPECT_EQ(once.job().nextRun(once.now), sys_seconds(10min));
  once.runUntil(2 * hour);
  EXPECT_EQ(once.job().nextRun(once.now), std::nullopt);
  EXPECT_THAT(once.missed(), ElementsAre()) << "it wouldn't have run";

  VirtualMachine unloaded(everyHour);
  unloaded.duration.reset();
  unloaded.load();
  unloaded.runUntil(hour);
  unloaded.unload();
  unloaded.runUntil(3 * hour);
  EXPECT_THAT(unloaded.missed(), ElementsAre());
}

TEST(HostedJob, MissesNothingBecauseTheClockIsSet) {
  for (const seconds change : {seconds(59min), seconds(-59min), seconds(5h)}) {
    VirtualMachine machine({{"StartCalendarInterval", Array{Dictionary{{"Minute", 0}}, Dictionary{{"Minute", 30}}}}});
    machine.load();
    machine.runUntil(6 * 3600 + 60);
    machine.setClock(change);
    machine.runUntil(10 * 3600);
    EXPECT_THAT(machine.missed(), ElementsAre()) << change.count();
  }
}

TEST(HostedJob, MissesWhatItSleptThroughThoughTheClockIsCorrectedOnWaking) {
  VirtualMachine machine({{"StartCalendarInterval", Dictionary{{"Minute", 0}}}});
  machine.load();
  machine.now.running += 4h + 100s;
  machine.now.wall += 4h + 100s;
  machine.setClock(3s);
  EXPECT_THAT(machine.missed(), ElementsAre("01:00 asleep", "02:00 asleep", "03:00 asleep"));
}

TEST(HostedJob, CountsTheTimesWithoutAHost) {
  const Dictionary noon{{"StartCalendarInterval", Dictionary{{"Hour", 12}, {"Minute", 0}}}};
  const auto missed = [](const Dictionary& keys, sys_seconds from, sys_seconds to) {
    VirtualMachine machine(keys, "Etc/UTC", to);
    machine.load(from);
    return machine.missed();
  };
  const sys_seconds day = sys_days(2026y / 3 / 1);
  EXPECT_THAT(missed(noon, day, day + 60h), ElementsAre("12:00 no host", "12:00 no host", "12:00 no host"));
  EXPECT_THAT(missed(noon, day + 12h, day + 36h), ElementsAre("12:00 no host")) << "it ran at the first noon";
  EXPECT_THAT(missed(noon, day + 13h, day + 35h), ElementsAre());
  EXPECT_THAT(missed(noon, day + 60h, day), ElementsAre()) << "the clock was set back";
  EXPECT_THAT(missed({{"StartInterval", 600}}, day, day + 60h), ElementsAre()) << "intervals begin with the host";
  const auto many = missed({{"StartCalendarInterval", everyMinute}}, day, day + days(1000) + 10h);
  ASSERT_EQ(many.size(), 100U);
  EXPECT_EQ(many.front(), "08:21 no host");
  EXPECT_EQ(many.back(), "10:00 no host");
}

TEST(HostedJob, MissesATimeOfTheChangedHourOnce) {
  const Dictionary halfPastTwo{{"StartCalendarInterval", Dictionary{{"Hour", 2}, {"Minute", 30}}}};
  // In Berlin, the clocks are set forward on 29 March at 1:00 UTC, and back on 25 October at 1:00 UTC.
  const struct {
    sys_seconds begin;  ///< midnight of the day before, UTC
    std::vector<std::string> missed;
  } rows[] = {{sys_days(2026y / 3 / 28), {"01:30 no host", "00:30 no host"}},
              {sys_days(2026y / 10 / 24), {"00:30 no host", "00:30 no host", "01:30 no host"}}};
  for (const auto& row : rows) {
    VirtualMachine absent(halfPastTwo, "Europe/Berlin", row.begin + 60h);
    absent.load(row.begin);
    EXPECT_EQ(absent.missed(), row.missed);
    VirtualMachine asleep(halfPastTwo, "Europe/Berlin", row.begin);
    asleep.load();
    asleep.sleepUntil(60 * 3600);
    EXPECT_EQ(asleep.missed().size(), row.missed.size() - 1) << "it runs for the last one";
    EXPECT_THAT(asleep.starts, ElementsAre(60 * 3600));
  }
}

TEST(JobRules, ACalendarIntervalWithAnUnusableTimeIsDropped) {
  const Dictionary noon{{"Hour", 12}, {"Minute", 0}}, wrong{{"Hour", "noon"}, {"Minute", 0}};
  const CalendarRule atNoon = CalendarRule::asRun({.minute = 0, .hour = 12});
  const struct {
    Value interval;
    std::vector<CalendarRule> rules;
  } rows[] = {{noon, {atNoon}},
              {wrong, {}},
              {Array{wrong, noon}, {atNoon}},
              {Array{noon, wrong, wrong}, {atNoon}},
              {Array{"no interval", wrong, noon}, {atNoon}},
              {Dictionary{{"Comment", true}}, {CalendarRule::asRun({})}},
              {"noon", {}}};
  for (const auto& row : rows) {
    const auto rules = JobRules::of(jobWith({{"StartCalendarInterval", row.interval}}));
    EXPECT_TRUE(rules.calendar == row.rules) << &row - rows;
  }
}

TEST(JobRules, NoJobRunsAnotherCommandOrWithMoreRightsThanItsFileSays) {
  constexpr uid_t root = 0, user = 501;
  const struct {
    Dictionary keys;
    std::vector<uid_t> refused;  ///< for these users
  } rows[] = {{{{"Program", 5}}, {root, user}},
              {{{"ProgramArguments", Array{"a", 5}}}, {root, user}},
              {{{"ProgramArguments", "a"}}, {root, user}},
              {{{"WorkingDirectory", 5}}, {root, user}},
              {{{"UserName", 501}}, {root}},  // other users ignore it anyway
              {{{"GroupName", true}}, {root}},
              {{{"RootDirectory", Array{}}}, {root}},
              {{{"Umask", "u=rwx"}}, {root}},
              {{{"Umask", "077"}}, {}},
              {{{"UserName", "nobody"}}, {}},
              {{{"Nice", "much"}}, {}},
              {{{"Disabled", "no"}}, {}}};
  for (const auto& row : rows) {
    std::vector<uid_t> refused;
    for (const uid_t who : {root, user}) {
      if (!checkRunnable(jobWith(row.keys), who)) refused.push_back(who);
    }
    EXPECT_EQ(refused, row.refused) << fileOf(row.keys);
  }
}

}  // namespace
}  // namespace mirvel::host
