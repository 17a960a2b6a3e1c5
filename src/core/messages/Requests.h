#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>

#include "core/base/Result.h"
#include "core/messages/Fields.h"
#include "core/propertylist/Value.h"

/// What a helper is asked for. Paths are absolute; a label is never sent empty, which could mean all jobs.
namespace mirvel::messages {

/// The numbers that name requests on the wire. 7 is reserved.
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
};

/// Writes a job file, whole or not at all; stops the job that it held, and loads the new one if it is enabled.
struct Write {
  std::filesystem::path path;
  std::optional<std::filesystem::path> deletePath = {};  ///< of the file that this one replaces at another place
  std::string string;                                    ///< the whole content
  std::optional<std::string> label = {};                 ///< that the job had, which is stopped as well
  std::optional<int> mode = {};                          ///< permissions that a new file has at most
  bool loads = false;

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

/// Stops a job and deletes its file.
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

/// Ends the helper after the requests about files that came before.
struct Quit {
  static Kind kind() { return Kind::Quit; }
  bool operator==(const Quit&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self&, Fields&) {}
};

/// Stops a job, or a test run, whose files are deleted then.
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

struct Load {
  std::filesystem::path path;

  static Kind kind() { return Kind::Load; }
  bool operator==(const Load&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("path", self.path);
  }
};

/// Runs a job once from a file that is written for it. Answered with `TestOutput` after its end, or after a minute.
struct Test {
  std::filesystem::path testPath;
  std::filesystem::path testOutputPath;
  std::string string;  ///< the content of the file
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

/// Removes the helpers that were installed outside of the package.
struct Uninstall {
  static Kind kind() { return Kind::Uninstall; }
  bool operator==(const Uninstall&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self&, Fields&) {}
};

struct LogQuery {
  std::optional<std::string> lastString = {};  ///< the period as it was typed, such as "4h"
  std::chrono::seconds period{};
  std::string searchString;

  bool operator==(const LogQuery&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("lastString", self.lastString);
    fields.decimalSeconds("lastSeconds", self.period);
    fields.requiredText("searchString", self.searchString);
  }
};

/// Asks for the lines of the last period that mention a text. Answered with `LogLines`.
struct Log {
  LogQuery query;

  static Kind kind() { return Kind::Log; }
  bool operator==(const Log&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("logQuery", self.query);
  }
};

/// Makes sure that the user's jobs run.
struct StartHost {
  static Kind kind() { return Kind::StartHost; }
  bool operator==(const StartHost&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self&, Fields&) {}
};

/// Asks for events on a topic. They carry the id of this request, which is in flight until it is cancelled; an answer
/// before that ends the subscription.
struct Subscribe {
  std::string topic;

  static Kind kind() { return Kind::Subscribe; }
  bool operator==(const Subscribe&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields.requiredText("topic", self.topic);
  }
};

using RequestContent = std::variant<Write, Delete, Quit, Unload, Load, Test, Uninstall, Log, StartHost, Subscribe>;

/// The secret in a request to the privileged helper, or in its greeting.
struct AuthData {
  std::optional<propertylist::Data> authData = {};

  bool operator==(const AuthData&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("authData", self.authData);
  }
};

struct Request {
  RequestContent content;
  bool presentError = true;
  bool privileged = false;
  AuthData authorisation = {};

  Kind kind() const;
  propertylist::Dictionary write() const;
  /// Errors are those of `FieldReader`, and `MissingKey` or `BadArgument` for an absent or unknown kind. Labels and the
  /// content of files aren't looked at.
  static Result<Request> read(const propertylist::Dictionary& dictionary);

  bool operator==(const Request&) const = default;
};

}  // namespace mirvel::messages
