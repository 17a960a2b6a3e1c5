#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Result.h"
#include "core/propertylist/Value.h"

/// How long anybody waits for the job host, and the host for its jobs. docs/ARCHITECTURE.md has the whole table.
namespace mirvel::host {

/// For a job that is stopped: after that the answer says what still runs. The job itself has its ExitTimeOut.
inline constexpr std::chrono::seconds longestStop{30};
/// For all jobs when the host ends; what still runs then is killed.
inline constexpr std::chrono::seconds longestQuit{35};
/// For the answer to any other request, and beyond the time that a request itself allows.
inline constexpr std::chrono::seconds longestAnswer{30};

}  // namespace mirvel::host

/// What passes between the job host and those who ask it. A request names what it wants under `request`; the answer
/// carries `error`, or what was asked for.
namespace mirvel::host {

namespace key {
inline constexpr std::string_view request = "request";
inline constexpr std::string_view path = "path";                ///< of a job file, absolute
inline constexpr std::string_view temporary = "temporary";      ///< true: the job isn't noted for the host's next start
inline constexpr std::string_view label = "label";              ///< of a job
inline constexpr std::string_view paths = "paths";              ///< of job files, absolute
inline constexpr std::string_view folders = "folders";          ///< of job files, absolute paths
inline constexpr std::string_view environment = "environment";  ///< the variables of a session
inline constexpr std::string_view seconds = "seconds";          ///< a time to wait, or the period of a log query
inline constexpr std::string_view text = "text";                ///< that lines of the log must hold
inline constexpr std::string_view ended = "ended";              ///< a boolean, the answer of `waitForEnd`
inline constexpr std::string_view staysOpen = "staysOpen";      ///< a boolean, the answer of `beginSession`
inline constexpr std::string_view ending = "ending";            ///< true beside an error: see `endingReply`
inline constexpr std::string_view lines = "lines";              ///< of the log: arrays of a real and a text
inline constexpr std::string_view jobs = "jobs";                ///< dictionaries, see `HostedJobStatus`
inline constexpr std::string_view error = "error";              ///< a dictionary with the two below
inline constexpr std::string_view code = "code";
inline constexpr std::string_view message = "message";
}  // namespace key

namespace request {
inline constexpr std::string_view load = "load";
/// Loads what lies in job folders, isn't disabled, and isn't loaded, as launchd does when its user logs in. What can't
/// be loaded is told in the log.
inline constexpr std::string_view start = "start";
/// A session of the user's begins: its jobs are loaded, as by `start`. A host whose own session is over, can't be told
/// from one that is, or has no display, ends and hangs up. The host of another session that is still open says so, and
/// hangs up when it ends, too. A second answer before that says that nobody shall take its place.
inline constexpr std::string_view beginSession = "beginSession";
/// Loads what another host had loaded and noted.
inline constexpr std::string_view takeOver = "takeOver";
inline constexpr std::string_view unload = "unload";
inline constexpr std::string_view waitForEnd = "waitForEnd";
inline constexpr std::string_view log = "log";
inline constexpr std::string_view status = "status";
inline constexpr std::string_view quit = "quit";
}  // namespace request

/// What a loaded job does.
struct HostedJobStatus {
  std::string label;
  std::string path;
  std::optional<std::int64_t> process = {};  ///< its number while it runs
  std::optional<std::string> lastEnd = {};   ///< in words; none: it hasn't ended yet
  std::optional<std::int64_t> lastCode = {};
  std::optional<std::int64_t> lastSignal = {};
  std::optional<std::chrono::sys_seconds> nextRun = {};  ///< by a timer

  propertylist::Dictionary toDictionary() const;
  static std::optional<HostedJobStatus> from(const propertylist::Value& value);
  bool operator==(const HostedJobStatus&) const = default;
};

propertylist::Dictionary errorReply(const Error& error);
/// The error of an answer, if it is one.
std::optional<Error> errorOf(const propertylist::Dictionary& answer);

/// The answer of a host that has begun to end to what it can't promise any more: nothing was done. It hangs up when it
/// has ended, so that the next host can be asked.
propertylist::Dictionary endingReply();

/// Whether there is a boolean of that key that says so.
bool isTrue(const propertylist::Dictionary& dictionary, std::string_view key);
/// The texts in an array.
std::vector<std::string> textsOf(const propertylist::Dictionary& dictionary, std::string_view key);
std::optional<std::string> textOf(const propertylist::Dictionary& dictionary, std::string_view key);
std::optional<std::int64_t> numberOf(const propertylist::Dictionary& dictionary, std::string_view key);

}  // namespace mirvel::host
