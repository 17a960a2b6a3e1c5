#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace mirvel {

/// What the system tells of a process.
struct ProcessStatus {
  pid_t id = 0;
  pid_t group = 0;
  pid_t session = 0;       ///< 0: the system doesn't tell
  std::int64_t start = 0;  ///< when it started, in a unit of the system's own
  bool hasEnded = false;   ///< and isn't collected yet

  /// None if there is no such process.
  static std::optional<ProcessStatus> of(pid_t id);
  static std::vector<ProcessStatus> all();
};

}  // namespace mirvel
