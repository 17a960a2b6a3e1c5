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
#include "core/messages/Replies.h"
#include "core/propertylist/Value.h"

/// How long the job host is waited for, and waits for its jobs. docs/ARCHITECTURE.md has the whole table.
namespace mirvel {

/// For a job that is stopped: after that the answer says what still runs. The job itself has its ExitTimeOut.
inline constexpr std::chrono::seconds longestStop{30};
/// For all jobs when the host ends; what still runs then is killed.
inline constexpr std::chrono::seconds longestQuit{35};
/// For the answer to any other request, and beyond the time that a request itself allows.
inline constexpr std::chrono::seconds longestAnswer{30};

/// The state of a loaded job.
struct HostedJobStatus {
  std::string label;
  std::string path;
  std::optional<std::int64_t> process = {};  ///< its number while it runs
  std::optional<std::string> lastEnd = {};   ///< in words; none: it hasn't ended yet
  std::optional<std::int64_t> lastCode = {};
  std::optional<std::int64_t> lastSignal = {};
  std::optional<std::chrono::sys_seconds> nextRun = {};  ///< by a timer

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

/// What passes between the job host and its clients. Each request has the type of its answer.
namespace mirvel::hostdata {

/// An answer that says no more than that it is done.
struct Nothing {
  bool operator==(const Nothing&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self&, Fields&) {}
};

/// A time to wait, or the period of a query.
inline constexpr messages::NumberRange anyPeriod{0, std::int64_t{100} * 366 * 24 * 3600, "is no number of seconds"};

struct Load {
  static constexpr std::string_view name = "load";
  using Answer = Nothing;
  std::string path;          ///< of the job file
  bool isTemporary = false;  ///< the host doesn't load it again at its next start

  bool operator==(const Load&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("path", self.path);
    fields("temporary", self.isTemporary);
  }
};

/// Loads the jobs in the folders that are enabled and not loaded yet, as launchd does when its user logs in. Those that
/// can't be loaded are named in the log.
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

/// A session of the user's begins: its jobs are loaded, as by `Start`. A host whose own session is over, can't be told
/// from one that is, or has no display, ends and hangs up. The host of another session that is still open says so, and
/// hangs up when it ends, too. A second answer before that says that nobody shall take its place.
struct BeginSession {
  static constexpr std::string_view name = "beginSession";
  struct Answer {
    bool staysOpen = false;

    bool operator==(const Answer&) const = default;
    template <typename Self, typename Fields>
    static void fields(Self& self, Fields& fields) {
      fields("staysOpen", self.staysOpen);
    }
  };
  std::map<std::string, std::string> environment;  ///< of the session
  std::vector<std::string> folders;

  bool operator==(const BeginSession&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("environment", self.environment);
    fields("folders", self.folders);
  }
};

/// Loads what another host had loaded and noted.
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

/// Unloads the job of the label, or of the path; see `Host::unload`. Answered when its process has ended, or after the
/// limit, `longestStop` at most, with an error that names what still runs.
struct Unload {
  static constexpr std::string_view name = "unload";
  using Answer = Nothing;
  std::optional<std::string> path = {};
  std::optional<std::string> label = {};
  std::optional<std::int64_t> seconds = {};

  bool operator==(const Unload&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("path", self.path);
    fields("label", self.label);
    fields("seconds", self.seconds, anyPeriod);
  }
};

/// Answered when the job has run to its end once since it was loaded, is unloaded, or after the time.
struct WaitForEnd {
  static constexpr std::string_view name = "waitForEnd";
  struct Answer {
    bool hasEnded = false;

    bool operator==(const Answer&) const = default;
    template <typename Self, typename Fields>
    static void fields(Self& self, Fields& fields) {
      fields("ended", self.hasEnded);
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

/// The lines of the last seconds that contain the text.
struct Log {
  static constexpr std::string_view name = "log";
  struct Answer {
    std::vector<messages::LogLine> lines;  ///< the oldest first

    bool operator==(const Answer&) const = default;
    template <typename Self, typename Fields>
    static void fields(Self& self, Fields& fields) {
      fields("lines", self.lines);
    }
  };
  std::int64_t seconds = 0;
  std::string text;

  bool operator==(const Log&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("seconds", self.seconds, anyPeriod);
    fields("text", self.text);
  }
};

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

/// Ends the host with all its jobs. The end of the connection is the answer.
struct Quit {
  static constexpr std::string_view name = "quit";
  using Answer = Nothing;

  bool operator==(const Quit&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self&, Fields&) {}
};

using Request = std::variant<Load, Start, BeginSession, TakeOver, Unload, WaitForEnd, Log, Status, Quit>;

propertylist::Dictionary write(const Request& request);
/// `BadArgument` for a request of an unknown name; else the errors of `messages::FieldReader`.
Result<Request> readRequest(const propertylist::Dictionary& dictionary);

/// The answer to a request that wasn't carried out.
struct Refusal {
  Error error;
  /// The host has begun to end and can't promise anything any more: nothing was done. It hangs up when it has ended, so
  /// that the next host can be asked.
  bool isEnding = false;

  static Refusal ending();

  propertylist::Dictionary write() const;
  /// None: the answer is no refusal. One that can't be read is an `Io` error.
  static std::optional<Refusal> read(const propertylist::Dictionary& answer);
};

}  // namespace mirvel::hostdata
