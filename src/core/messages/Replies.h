#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/base/Result.h"
#include "core/messages/HelperFailure.h"
#include "core/messages/Requests.h"
#include "core/propertylist/Value.h"

/// The replies of a helper.
namespace mirvel::messages {

/// The request has been carried out. The reply to all requests without content to return.
struct Done {
  bool operator==(const Done&) const = default;
};

/// The reply to `Test`.
struct TestOutput {
  std::string text;  ///< everything the job has printed, as UTF-8

  bool operator==(const TestOutput&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("test", self.text);
  }
};

/// A line of the log.
struct LogLine {
  double seconds = 0;  ///< since 1970
  std::string message;

  bool operator==(const LogLine&) const = default;
  /// The form in which the job host sends a line. In the reply of a helper, a line is a dictionary with one entry
  /// instead, from `dateKey` to message.
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("seconds", self.seconds);
    fields("message", self.message);
  }
};

/// The reply to `Log`.
struct LogLines {
  std::vector<LogLine> lines;  ///< oldest first

  bool operator==(const LogLines&) const = default;
};

/// A reply; `HelperError` is possible for every request.
using Reply = std::variant<Done, TestOutput, LogLines, HelperError>;

/// The dictionary to send. Its keys depend on the type of the reply, which isn't sent itself.
propertylist::Dictionary write(const Reply& reply);

/// Reads the reply to a request of this kind. Of an error reply, parts that can't be interpreted are ignored. Fails
/// with `MissingKey` or `WrongType` if the requested content is missing.
Result<Reply> readReply(Kind request, const propertylist::Dictionary& dictionary);

/// A time as the key of a dictionary: decimal seconds since 1970, rounded to microseconds, without trailing zeros, such
/// as "1700000000.25".
std::string dateKey(double seconds);

/// The seconds of such a key; none for any other text, and for times of more than 10^12 seconds.
std::optional<double> dateOfKey(std::string_view key);

}  // namespace mirvel::messages
