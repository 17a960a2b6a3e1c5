#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace mirvel::lint {

/// An error is what launchd or this program refuses, or what can never work; a warning is what a person should look at.
enum class Severity { error, warning };

/// One remark on a job file.
struct Finding {
  Severity severity = Severity::warning;
  std::string message;                       ///< one clause, without the place, without a full stop
  std::size_t line = 0;                      ///< counted from 1; 0: the remark has no line, or the file is binary
  std::size_t column = 0;                    ///< in bytes of UTF-8 text, counted from 1
  std::optional<std::uint64_t> offset = {};  ///< byte offset in a binary list
  std::string keyPath = {};                  ///< such as `StartCalendarInterval[1].Hour`

  /// For a person: "error: line 13, column 5: StartInterval: holds ...".
  std::string text() const;
};

}  // namespace mirvel::lint
