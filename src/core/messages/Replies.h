#pragma once

#include <string>
#include <variant>
#include <vector>

#include "core/base/Result.h"
#include "core/messages/HelperFailure.h"
#include "core/messages/Requests.h"
#include "core/propertylist/Value.h"

/// What a helper answers.
namespace mirvel::messages {

/// What was asked for is done.
struct Done {
  bool operator==(const Done&) const = default;
};

struct TestOutput {
  std::string text;  ///< all that the test printed, UTF-8

  bool operator==(const TestOutput&) const = default;
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("test", self.text);
  }
};

struct LogLine {
  double seconds = 0;  ///< since 1970
  std::string message;

  bool operator==(const LogLine&) const = default;
  /// As the job host sends it. In the reply of a helper a line is a dictionary from its time to its message.
  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("seconds", self.seconds);
    fields("message", self.message);
  }
};

struct LogLines {
  std::vector<LogLine> lines;  ///< the oldest first

  bool operator==(const LogLines&) const = default;
};

using Reply = std::variant<Done, TestOutput, LogLines, HelperError>;

propertylist::Dictionary write(const Reply& reply);

/// The reply to a request of that kind. An error reply is read leniently: what can't be understood of it is left out. A
/// reply without what was asked for is an error, `MissingKey` or `WrongType`.
Result<Reply> readReply(Kind request, const propertylist::Dictionary& dictionary);

}  // namespace mirvel::messages
