#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>

#include "core/base/Result.h"
#include "core/messages/Fields.h"
#include "core/propertylist/Value.h"

/// The requests to a helper. Paths are absolute. A label is never sent empty, since tools could take that for all jobs.
///
/// To add a request, add a number to `Kind` and a struct with its fields here, the struct to `RequestContent`, its case
/// to `readContent` in the source, and, if its answer has content, a reply in Replies.h. `RequestHandler` must then
/// handle it, or it doesn't compile. A request that an older helper doesn't know is refused with `BadArgument`.
namespace mirvel::messages {

/// The numbers of the requests on the wire. They must not change. 7 is reserved.
enum class Kind {
  Write = 0,
  WriteAndLoad = 1,
  Delete = 2,
  Quit = 3,
  Unload = 4,
  Load = 5,
  Test = 6,
  Uninstall = 8,
  Log = 9,
  StartHost = 32,
  Subscribe = 33,
  StartJob = 34,
  StopJob = 35,
  RestartJob = 36,
};

/// Writes a job file atomically, and unloads the job that the file had contained. With `loads`, also loads the new job
/// unless it is disabled.
struct Write {
  std::filesystem::path path;
  std::optional<std::filesystem::path> deletePath = {};  ///< the previous location of a file that moves; it is deleted
  std::string string;                                    ///< the content of the job file
  std::optional<std::string> label = {};  ///< the previous label, if it has changed; that job is unloaded, too
  std::optional<int> mode = {};           ///< the permissions of a new file are limited to these
  bool loads = false;                     ///< sent as the kind, not as a field

  Kind kind() const { return loads ? Kind::WriteAndLoad : Kind::Write; }
  bool operator==(const Write&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("path", self.path);
    fields("deletePath", self.deletePath);
    fields("string", self.string);
    fields("label", self.label);
    fields("mode", self.mode, NumberRange{0, 0777, "is no mode of a file"});
  }
};

/// Unloads a job and deletes its file.
struct Delete {
  std::filesystem::path deletePath;
  std::optional<std::string> label = {};

  static Kind kind() { return Kind::Delete; }
  bool operator==(const Delete&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("deletePath", self.deletePath);
    fields("label", self.label);
  }
};

/// Ends the helper, once it has completed the preceding requests that concern files.
struct Quit {
  static Kind kind() { return Kind::Quit; }
  bool operator==(const Quit&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self&, Fields&) {}
};

/// Unloads a job, or ends a test run and deletes its files.
struct Unload {
  std::filesystem::path path;
  std::optional<std::string> label = {};

  static Kind kind() { return Kind::Unload; }
  bool operator==(const Unload&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("path", self.path);
    fields("label", self.label);
  }
};

/// Loads the job of a file.
struct Load {
  std::filesystem::path path;

  static Kind kind() { return Kind::Load; }
  bool operator==(const Load&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("path", self.path);
  }
};

/// Starts a loaded job now, whatever its schedule and throttle interval say; ends its current run; or both. Answered
/// when the process has been started, or when all processes of the run have ended. Starting a running job and stopping
/// one that doesn't run have no effect; a job that `KeepAlive` starts again isn't kept from that.
struct Control {
  enum class Order { Start, Stop, Restart };

  std::filesystem::path path;  ///< of the job file
  std::string label;           ///< under which it is loaded
  Order order = Order::Start;  ///< sent as the kind, not as a field

  Kind kind() const;
  bool operator==(const Control&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("path", self.path);
    fields.requiredText("label", self.label);
  }
};

/// Writes a temporary job file and runs its job once. Events of the form of `TestProgress` carry the output while it
/// comes. Answered with `TestResult` when the job has ended, at the latest after a minute.
struct Test {
  std::filesystem::path testPath;        ///< of the temporary job file
  std::filesystem::path testOutputPath;  ///< of the file that receives the output
  std::string string;                    ///< the content of the job file
  std::optional<std::string> label = {};

  static Kind kind() { return Kind::Test; }
  bool operator==(const Test&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("testPath", self.testPath);
    fields("testOutputPath", self.testOutputPath);
    fields("string", self.string);
    fields("label", self.label);
  }
};

/// Removes helpers that were installed separately from the package.
struct Uninstall {
  static Kind kind() { return Kind::Uninstall; }
  bool operator==(const Uninstall&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self&, Fields&) {}
};

/// Which lines of the log of a job to return.
struct LogQuery {
  std::optional<std::string> lastString = {};  ///< the period as entered, such as "4h"
  std::chrono::seconds period{};               ///< how far to go back from now
  std::string searchString;                    ///< the label under which the job is loaded, exactly; not empty
  /// Only lines with a larger number. Without any, the answer waits for one, at most `longestLogWait`.
  std::optional<std::int64_t> after = {};

  bool operator==(const LogQuery&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("lastString", self.lastString);
    fields.decimalSeconds("lastSeconds", self.period);
    fields.requiredText("searchString", self.searchString);
    fields("after", self.after, anyCount);
  }
};

/// How long a query waits for new lines at most. It is then answered without lines.
inline constexpr std::chrono::seconds longestLogWait{300};

/// Queries the log. Answered with `LogLines`.
struct Log {
  LogQuery query;

  static Kind kind() { return Kind::Log; }
  bool operator==(const Log&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("logQuery", self.query);
  }
};

/// Starts the host of the user's jobs, if the platform needs one and it isn't running.
struct StartHost {
  static Kind kind() { return Kind::StartHost; }
  bool operator==(const StartHost&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self&, Fields&) {}
};

/// Subscribes to the events of a topic. They are sent with the id of this request, which stays unanswered until it is
/// cancelled; a reply ends the subscription.
struct Subscribe {
  std::string topic;

  static Kind kind() { return Kind::Subscribe; }
  bool operator==(const Subscribe&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields.requiredText("topic", self.topic);
  }
};

/// All requests.
using RequestContent =
    std::variant<Write, Delete, Quit, Unload, Load, Control, Test, Uninstall, Log, StartHost, Subscribe>;

/// The secret that authenticates a request to the privileged helper, or the greeting of a connection to it.
struct AuthData {
  std::optional<propertylist::Data> authData = {};

  bool operator==(const AuthData&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("authData", self.authData);
  }
};

/// A complete request.
struct Request {
  RequestContent content;
  bool presentError = true;  ///< whether a failure is shown to the user
  bool privileged = false;   ///< whether it is meant for the helper that acts as root
  AuthData authorisation = {};

  Kind kind() const;
  /// The dictionary to send: the fields of the content and the common ones.
  propertylist::Dictionary write() const;
  /// Fails like `FieldReader`, and with `MissingKey` or `BadArgument` for an absent or unknown kind. Doesn't validate
  /// labels and the content of files.
  static Result<Request> read(const propertylist::Dictionary& dictionary);

  bool operator==(const Request&) const = default;
};

}  // namespace mirvel::messages
