#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/messages/Fields.h"

/// What a job host reports about its jobs: whether they run, and how their earlier runs ended.
namespace mirvel {

/// Why a run began. The numbers are stored and sent; they must not change.
enum class RunCause : std::int8_t {
  Unknown = 0,
  Load = 1,            ///< `RunAtLoad`
  Interval = 2,        ///< `StartInterval`
  Calendar = 3,        ///< `StartCalendarInterval`
  WatchedPath = 4,     ///< `WatchPaths`
  QueueDirectory = 5,  ///< `QueueDirectories`
  Mount = 6,           ///< `StartOnMount`
  KeepAlive = 7,
  Request = 8,  ///< the user has started it
  Test = 9,     ///< a test run
};
inline constexpr auto lastRunCause = RunCause::Test;

/// What kept a program from being started. The numbers are stored and sent; they must not change.
enum class StartObstacle : std::int8_t {
  Other = 0,
  Program = 1,           ///< it doesn't exist, isn't executable, or its interpreter is missing: see the system's code
  WorkingDirectory = 2,  ///< it can't be entered
  RootDirectory = 3,     ///< likewise
  User = 4,              ///< the user database has no such user
  Group = 5,             ///< likewise
  StandardIn = 6,        ///< the file can't be opened
  StandardOut = 7,
  StandardError = 8,
  Rights = 9,     ///< user, group, limits or nice value can't be set
  Resources = 10  ///< too many processes or too little memory: it may start later
};
inline constexpr auto lastStartObstacle = StartObstacle::Resources;

/// How a run ended.
struct RunEnd {
  /// The numbers are stored and sent; they must not change.
  enum class How : std::int8_t {
    Exited = 0,         ///< with the exit status `code`
    Signalled = 1,      ///< by the signal `code`
    CouldNotStart = 2,  ///< because of `obstacle`; `code` is the errno value of the system, 0 if there is none
    Lost = 3            ///< the host ended before the run did, so the outcome isn't known
  };

  How how = How::Exited;
  std::int64_t code = 0;
  StartObstacle obstacle = StartObstacle::Other;
  std::string subject = {};  ///< the path or name that was the obstacle; empty: not known or not public
  bool isStopped = false;    ///< the user or the host had asked it to end: stopped, unloaded, logged out
  bool isTimedOut = false;   ///< it didn't end within `ExitTimeOut` and was killed

  bool operator==(const RunEnd&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields.enumeration("how", self.how, How::Lost);
    fields("code", self.code, messages::anyNumber);
    fields.enumeration("obstacle", self.obstacle, lastStartObstacle);
    fields("subject", self.subject);
    fields("stopped", self.isStopped);
    fields("timedOut", self.isTimedOut);
  }
};

/// One run of a job. Times are seconds since 1970, with microseconds.
struct RunReport {
  std::int64_t number = 0;  ///< counts the runs of a label, from 1
  double start = 0;
  std::optional<double> endTime = {};  ///< none while it runs
  RunCause cause = RunCause::Unknown;
  std::int64_t process = 0;        ///< its first process; 0: none was started, or it isn't known
  std::optional<RunEnd> end = {};  ///< none while it runs

  bool operator==(const RunReport&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("number", self.number, messages::anyNumber);
    fields("start", self.start);
    fields("endTime", self.endTime);
    fields.enumeration("cause", self.cause, lastRunCause);
    fields("process", self.process, messages::anyNumber);
    fields("end", self.end);
  }
};

/// A scheduled time at which the job didn't run.
struct MissedRun {
  /// The numbers are stored and sent; they must not change.
  enum class Why : std::int8_t {
    StillRunning = 0,  ///< its previous run hadn't ended
    Asleep = 1,        ///< the machine slept; one run follows for all times that it slept through
    NoHost = 2         ///< nothing ran jobs: the machine was off, or the user wasn't logged in
  };

  double time = 0;  ///< seconds since 1970
  Why why = Why::NoHost;

  bool operator==(const MissedRun&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("time", self.time);
    fields.enumeration("why", self.why, Why::NoHost);
  }
};

/// What is known of a job that is loaded, or was. A host publishes one for each label; see `ReportFolders`.
struct JobReport {
  static constexpr std::size_t mostRuns = 100;    ///< the newest are kept
  static constexpr std::size_t mostMissed = 100;  ///< likewise

  std::string label;
  std::string path = {};  ///< of the job file
  bool isLoaded = false;  ///< false: it was, and its runs are still known
  bool isTest = false;    ///< a test run, which is no job of the user's
  /// The first process of the current run, and its start in the unit of `ProcessStatus::start`: together they identify
  /// it, also after the host was killed. 0: it doesn't run.
  std::int64_t process = 0;
  std::int64_t processStart = 0;
  bool isStopping = false;             ///< its processes were asked to end
  std::optional<double> nextRun = {};  ///< by an interval or calendar interval
  std::vector<RunReport> runs = {};    ///< the oldest first; the last one has no end while the job runs
  std::vector<MissedRun> missed = {};  ///< the oldest first
  /// The host doesn't know times and earlier runs, as launchctl(1): `runs` has at most one entry, of which only the
  /// end is known.
  bool isPartial = false;

  bool operator==(const JobReport&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("label", self.label);
    fields("path", self.path);
    fields("loaded", self.isLoaded);
    fields("test", self.isTest);
    fields("process", self.process, messages::anyNumber);
    fields("processStart", self.processStart, messages::anyNumber);
    fields("stopping", self.isStopping);
    fields("nextRun", self.nextRun);
    fields("runs", self.runs);
    fields("missed", self.missed);
    fields("partial", self.isPartial);
  }

  /// The property list of one report, as it is stored and sent.
  propertylist::Dictionary write() const;
  /// Fails like `messages::FieldReader`, and with `LimitExceeded` for more than ten times as many runs as are kept.
  static Result<JobReport> read(const propertylist::Dictionary& dictionary);
};

/// Whether a run failed: it ended by itself with another exit status than 0, by a signal that nobody here has sent, or
/// couldn't start. Not if it was stopped, is lost, or was a test.
bool hasFailed(const RunReport& run);

}  // namespace mirvel
