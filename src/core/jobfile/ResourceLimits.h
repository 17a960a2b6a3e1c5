#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "core/propertylist/Node.h"
#include "core/propertylist/Value.h"

// What the job's process is started with: limits and the file mode creation mask.

namespace mirvel::jobfile {

class Place;

/// The keys `SoftResourceLimits` and `HardResourceLimits`: limits of setrlimit(2). An absent one is inherited. No range
/// is checked. Sizes are in bytes.
struct ResourceLimits {
  enum class CodingKeys {
    Core,
    Cpu,
    Data,
    FileSize,
    MemoryLock,
    NumberOfFiles,
    NumberOfProcesses,
    ResidentSetSize,
    Stack
  };
  /// The key as in the file: "CPU".
  static std::string_view text(CodingKeys key);
  struct Member {
    std::string_view key;
    std::optional<std::int64_t> ResourceLimits::*limit;
  };
  /// All limits, in the order of the enumeration.
  static std::span<const Member> members();

  std::optional<std::int64_t> core = {};               ///< of a core file
  std::optional<std::int64_t> cpu = {};                ///< seconds of processor time
  std::optional<std::int64_t> data = {};               ///< of the data segment
  std::optional<std::int64_t> fileSize = {};           ///< of each file written
  std::optional<std::int64_t> memoryLock = {};         ///< of locked memory
  std::optional<std::int64_t> numberOfFiles = {};      ///< open descriptors
  std::optional<std::int64_t> numberOfProcesses = {};  ///< of the user
  std::optional<std::int64_t> residentSetSize = {};    ///< a hint only, when memory is short
  std::optional<std::int64_t> stack = {};              ///< of the stack segment

  bool operator==(const ResourceLimits&) const = default;
};

/// Fails if the value isn't a dictionary or a known limit isn't a whole number; ignores unknown limits.
void decode(const propertylist::Node& node, const Place& place, ResourceLimits& result);
/// A dictionary, possibly empty.
std::optional<propertylist::Value> encode(const ResourceLimits& limits);

/// The key `Umask`: the mask as a plain number, so 18 for octal 022. Absent if the file's value can't be interpreted.
struct Umask {
  std::optional<std::int64_t> int_ = {};

  bool operator==(const Umask&) const = default;
};

/// Never fails. Accepts whole numbers, and strings: octal digits if the string starts with 0, else a decimal number
/// with an optional sign. `"022"` and `18` yield 18; `"089"`, `"18 "` and `true` yield nothing.
void decode(const propertylist::Node& node, const Place& place, Umask& result);
/// An integer, even if the file has a string; none for an absent number.
std::optional<propertylist::Value> encode(const Umask& umask);

}  // namespace mirvel::jobfile
