#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/base/Result.h"
#include "core/messages/JobReport.h"
#include "core/messages/Replies.h"
#include "core/messages/Requests.h"
#include "core/propertylist/Value.h"

/// Time limits of the job host and its clients. docs/JOB-HOST.md has the table of all of them.
namespace mirvel {

/// For stopping a job: after that, the reply names the processes that are still running. The host goes on stopping
/// them.
inline constexpr std::chrono::seconds longestStop{30};
/// For stopping all jobs when the host shuts down; processes that are still running are killed then.
inline constexpr std::chrono::seconds longestQuit{35};
/// For the reply to any request, in addition to the time that the request itself allows.
inline constexpr std::chrono::seconds longestAnswer{30};

/// The state of a loaded job.
struct HostedJobStatus {
  std::string label;
  std::string path;
  std::optional<std::int64_t> process = {};              ///< its process ID while it runs
  std::optional<std::string> lastEnd = {};               ///< such as "exited with 1"; none: it hasn't run yet
  std::optional<std::int64_t> lastCode = {};             ///< exit status; 0 if a signal ended it
  std::optional<std::int64_t> lastSignal = {};           ///< 0: none
  std::optional<std::chrono::sys_seconds> nextRun = {};  ///< by an interval or calendar interval

  bool operator==(const HostedJobStatus&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    constexpr messages::NumberRange any{INT64_MIN, INT64_MAX, "is no number"};
    fields("label", self.label);
    fields("path", self.path);
    fields("process", self.process, any);
    fields("lastEnd", self.lastEnd);
    fields("lastCode", self.lastCode, any);
    fields("lastSignal", self.lastSignal, any);
    fields("nextRun", self.nextRun);
  }
};

}  // namespace mirvel

/// The messages between the job host and its clients. Each request names the type of its reply, `Answer`, and has one
/// `fields` function that both reads and writes it, so that each key is spelled once. Unknown keys are ignored.
namespace mirvel::hostdata {

/// The reply to a request that only succeeds or fails.
struct Nothing {
  bool operator==(const Nothing&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self&, Fields&) {}
};

/// The range of a time limit or period, in seconds.
inline constexpr messages::NumberRange anyPeriod{0, std::int64_t{100} * 366 * 24 * 3600, "is no number of seconds"};

/// Loads a job file. `BadArgument` if its label is loaded already, `NotTrusted` if others could have written the file,
/// `StillRunning` if the last run of the label is still being stopped: the host then loads the file afterwards.
struct Load {
  static constexpr std::string_view name = "load";
  using Answer = Nothing;
  std::string path;          ///< of the job file
  bool isTemporary = false;  ///< for a test run: unloaded when the client's process ends, and never loaded again

  bool operator==(const Load&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("path", self.path);
    fields("temporary", self.isTemporary);
  }
};

/// Loads the enabled jobs in the folders that aren't loaded yet, as launchd does at login. The log says which of them
/// can't be loaded, and why; that isn't an error.
struct Start {
  static constexpr std::string_view name = "start";
  using Answer = Nothing;
  std::vector<std::string> folders;

  bool operator==(const Start&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("folders", self.folders);
  }
};

/// A session of the user begins: its jobs are loaded, as by `Start`. A host of another session makes room: it shuts
/// down, without a reply, if its own session is over, unknown to the login manager or without a display. Otherwise it
/// replies that it stays, and closes the connection when it ends. A second reply with `staysOpen` false means that it
/// was asked to end and that no host should take its place.
struct BeginSession {
  static constexpr std::string_view name = "beginSession";
  struct Answer {
    bool staysOpen = false;  ///< the connection stays open until the host ends

    bool operator==(const Answer&) const = default;
    template <typename Self, typename Fields>
    static void fields(Self& self, Fields& fields) {
      fields("staysOpen", self.staysOpen);
    }
  };
  std::map<std::string, std::string> environment;  ///< the variables that identify the session
  std::vector<std::string> folders;

  bool operator==(const BeginSession&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("environment", self.environment);
    fields("folders", self.folders);
  }
};

/// Loads the files that another host had loaded before this one took its place. Files that can't be loaded now are
/// loaded when they change.
struct TakeOver {
  static constexpr std::string_view name = "takeOver";
  using Answer = Nothing;
  std::vector<std::string> paths;  ///< of job files

  bool operator==(const TakeOver&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("paths", self.paths);
  }
};

/// Unloads the job with the label, or without a label that of the file; see `Host::unload`. The reply is sent when its
/// processes have ended, or after the limit, as a `StillRunning` error that names them.
struct Unload {
  static constexpr std::string_view name = "unload";
  using Answer = Nothing;
  std::optional<std::string> path = {};
  std::optional<std::string> label = {};
  std::optional<std::int64_t> seconds = {};  ///< at most `longestStop`, which is also the default

  bool operator==(const Unload&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("path", self.path);
    fields("label", self.label);
    fields("seconds", self.seconds, anyPeriod);
  }
};

/// Waits until the job has ended once since it was loaded, is unloaded, or the time is over. `NotFound` if no job of
/// that label is loaded.
struct WaitForEnd {
  static constexpr std::string_view name = "waitForEnd";
  struct Answer {
    bool hasEnded = false;
    std::optional<RunReport> run = {};  ///< its first run since it was loaded; none if it was unloaded before its end

    bool operator==(const Answer&) const = default;
    template <typename Self, typename Fields>
    static void fields(Self& self, Fields& fields) {
      fields("ended", self.hasEnded);
      fields("run", self.run);
    }
  };
  std::string label;
  std::int64_t seconds = 0;

  bool operator==(const WaitForEnd&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("label", self.label);
    fields("seconds", self.seconds, anyPeriod);
  }
};

/// Starts or stops a loaded job. The reply to a start is sent when the program runs, or as the error that kept it from
/// running (`Io`, or `LimitExceeded` if there may be room for it later); to a stop, when all processes of the run have
/// ended. A running job isn't started, nor another one stopped. `NotFound` if the label isn't loaded from the file or
/// is unloaded meanwhile, `Cancelled` if another client stops the job before it is started, and `StillRunning` after
/// `longestStop`: the host then continues.
struct Control {
  static constexpr std::string_view name = "control";
  using Answer = Nothing;
  using Order = messages::Control::Order;
  std::string path;  ///< of the job file
  std::string label;
  Order order = Order::Start;

  bool operator==(const Control&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("path", self.path);
    fields("label", self.label);
    fields.enumeration("order", self.order, Order::Restart);
  }
};

/// The lines of the log of a label, which needn't be loaded; see `LogRange`. With `after`, the answer waits for a line,
/// at most `messages::longestLogWait`. The label of the host's own messages is `ownLabel`.
struct Log {
  static constexpr std::string_view name = "log";
  static constexpr const char* ownLabel = "mirvel-host";
  struct Answer {
    propertylist::Data blocks = {};  ///< in the stored form, see `linesOfBlocks`
    /// That of the request, or 0 if its lines have been deleted and the numbers have begun again.
    std::optional<std::int64_t> after = {};

    bool operator==(const Answer&) const = default;
    template <typename Self, typename Fields>
    static void fields(Self& self, Fields& fields) {
      fields("blocks", self.blocks);
      fields("after", self.after, messages::anyCount);
    }
  };
  std::string label;
  std::int64_t since = 0;  ///< microseconds since 1970
  std::optional<std::int64_t> after = {};

  bool operator==(const Log&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields.requiredText("label", self.label);
    fields("since", self.since, messages::anyNumber);
    fields("after", self.after, messages::anyCount);
  }
};

/// The state of all loaded jobs.
struct Status {
  static constexpr std::string_view name = "status";
  struct Answer {
    std::vector<HostedJobStatus> jobs;

    bool operator==(const Answer&) const = default;
    template <typename Self, typename Fields>
    static void fields(Self& self, Fields& fields) {
      fields("jobs", self.jobs);
    }
  };

  bool operator==(const Status&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self&, Fields&) {}
};

/// Ends the host with all its jobs. It has no reply: the host closes the connection when it has ended.
struct Quit {
  static constexpr std::string_view name = "quit";
  using Answer = Nothing;

  bool operator==(const Quit&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self&, Fields&) {}
};

using Request = std::variant<Load, Start, BeginSession, TakeOver, Unload, WaitForEnd, Control, Log, Status, Quit>;

/// The body of a frame.
propertylist::Dictionary write(const Request& request);
/// The opposite. Fails with `BadArgument` for an unknown name and with the errors of `messages::FieldReader`.
Result<Request> readRequest(const propertylist::Dictionary& dictionary);

/// The reply to a request that wasn't executed.
struct Refusal {
  Error error;
  /// The host is shutting down and accepts nothing that its successor would have to know. It closes the connection when
  /// it has ended, so that the client can ask the next host.
  bool isEnding = false;

  static Refusal ending();

  propertylist::Dictionary write() const;
  /// None if the reply isn't a refusal. A refusal that can't be read counts as one with an `Io` error.
  static std::optional<Refusal> read(const propertylist::Dictionary& answer);
};

}  // namespace mirvel::hostdata
