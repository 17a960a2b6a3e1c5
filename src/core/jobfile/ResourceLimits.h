#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "core/propertylist/Node.h"
#include "core/propertylist/Value.h"

namespace mirvel::jobfile {

class Place;

/// Limits of setrlimit(2) for the job, soft or hard.
struct ResourceLimits {
  enum class CodingKeys {
    core,
    cpu,
    data,
    fileSize,
    memoryLock,
    numberOfFiles,
    numberOfProcesses,
    residentSetSize,
    stack
  };
  static std::string_view text(CodingKeys key);
  static std::optional<CodingKeys> codingKey(std::string_view text);

  std::optional<std::int64_t> core = {};
  std::optional<std::int64_t> cpu = {};
  std::optional<std::int64_t> data = {};
  std::optional<std::int64_t> fileSize = {};
  std::optional<std::int64_t> memoryLock = {};
  std::optional<std::int64_t> numberOfFiles = {};
  std::optional<std::int64_t> numberOfProcesses = {};
  std::optional<std::int64_t> residentSetSize = {};
  std::optional<std::int64_t> stack = {};

  bool operator==(const ResourceLimits&) const = default;
};

void decode(const propertylist::Node& node, const Place& place, ResourceLimits& result);
std::optional<propertylist::Value> encode(const ResourceLimits& limits);

}  // namespace mirvel::jobfile
