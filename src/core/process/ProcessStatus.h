#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mirvel {

/// The system's information about a process.
struct ProcessStatus {
  pid_t id = 0;
  pid_t group = 0;
  pid_t session = 0;       ///< 0 where the system doesn't report it (macOS)
  std::int64_t start = 0;  ///< start time in a unit of the system: clock ticks since boot, or microseconds since 1970
  bool hasEnded = false;   ///< a zombie

  /// Returns nullopt if there is no such process.
  static std::optional<ProcessStatus> of(pid_t id);
  /// All processes that this one may see. A process that starts or ends meanwhile may be included or not.
  static std::vector<ProcessStatus> all();
};

/// Identifies a process even after its number has been reused.
struct ProcessIdentity {
  pid_t id = 0;
  std::int64_t start = 0;  ///< see `ProcessStatus`

  static ProcessIdentity ofThisProcess();
  /// Returns nullopt if there is no such process.
  static std::optional<ProcessIdentity> of(pid_t id);

  /// Returns text such as "1234:567890".
  std::string text() const;
  /// Parses such text: "0:5", "5" and "5:" → nullopt.
  static std::optional<ProcessIdentity> from(std::string_view text);

  bool operator==(const ProcessIdentity&) const = default;
};

}  // namespace mirvel
