#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace mirvel {

/// A process, and not another one that has got its number since.
struct ProcessIdentity {
  pid_t id = 0;
  std::int64_t start = 0;  ///< when it started, in a unit of the system's own

  static ProcessIdentity ofThisProcess();
  /// None if there is no such process, or the system doesn't tell.
  static std::optional<ProcessIdentity> of(pid_t id);

  /// Such as "1234:567890".
  std::string text() const;
  static std::optional<ProcessIdentity> from(std::string_view text);

  bool operator==(const ProcessIdentity&) const = default;
};

}  // namespace mirvel
