#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/base/Result.h"
#include "core/messages/HelperFailure.h"
#include "core/messages/JobReport.h"
#include "core/messages/Requests.h"
#include "core/propertylist/Value.h"

/// The replies of a helper.
namespace mirvel::messages {

/// The request has been carried out. The reply to all requests without content to return.
struct Done {
  bool operator==(const Done&) const = default;
};

/// A piece of the output of a test, sent while it runs. The output is kept from its beginning, up to a limit; after
/// that only its end is, and what is left out between the two is counted.
struct TestProgress {
  std::string beginning = {};           ///< appended to what came before; UTF-8
  std::int64_t droppedLines = 0;        ///< all that are left out until now
  std::int64_t droppedBytes = 0;        ///< likewise
  std::optional<std::string> end = {};  ///< replaces the previous end; UTF-8

  bool operator==(const TestProgress&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("beginning", self.beginning);
    fields("droppedLines", self.droppedLines, anyNumber);
    fields("droppedBytes", self.droppedBytes, anyNumber);
    fields("end", self.end);
  }
};

/// The reply to `Test`.
struct TestResult {
  std::string text = {};                ///< all of the output or, if something is left out, its beginning; UTF-8
  std::int64_t droppedLines = 0;        ///< that are left out after it
  std::int64_t droppedBytes = 0;        ///< likewise
  std::optional<std::string> end = {};  ///< what follows the gap; UTF-8
  std::optional<RunEnd> outcome = {};   ///< none: it was still running after the time limit
  double seconds = 0;                   ///< how long it ran, or the time limit

  bool operator==(const TestResult&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("test", self.text);
    fields("droppedLines", self.droppedLines, anyNumber);
    fields("droppedBytes", self.droppedBytes, anyNumber);
    fields("end", self.end);
    fields("outcome", self.outcome);
    fields("seconds", self.seconds);
  }
};

/// A line of the log of a job.
struct LogLine {
  /// The numbers are stored and sent; they must not change.
  enum class Kind : std::int8_t {
    Output = 0,  ///< printed by the job
    Event = 1    ///< a start, an end, or another message of the host
  };

  std::int64_t number = 0;  ///< counts the lines of a label; those that were dropped count as well
  double seconds = 0;       ///< since 1970, with microseconds
  Kind kind = Kind::Output;
  std::string message = {};  ///< UTF-8 in the reply of a helper, any bytes before

  bool operator==(const LogLine&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("number", self.number, anyNumber);
    fields("seconds", self.seconds);
    fields.enumeration("kind", self.kind, Kind::Event);
    fields("message", self.message);
  }
};

/// The reply to `Log`.
struct LogLines {
  std::vector<LogLine> lines = {};  ///< in the order of their numbers
  std::int64_t dropped = 0;         ///< lines of the period that were printed but not kept

  bool operator==(const LogLines&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("logLines", self.lines);
    fields("dropped", self.dropped, anyNumber);
  }
};

/// A reply; `HelperError` is possible for every request.
using Reply = std::variant<Done, TestResult, LogLines, HelperError>;

/// The dictionary to send. Its keys depend on the type of the reply, which isn't sent itself.
propertylist::Dictionary write(const Reply& reply);

/// Reads the reply to a request of this kind. Of an error reply, parts that can't be interpreted are ignored. Fails
/// with `MissingKey` or `WrongType` if the requested content is missing.
Result<Reply> readReply(Kind request, const propertylist::Dictionary& dictionary);

}  // namespace mirvel::messages
