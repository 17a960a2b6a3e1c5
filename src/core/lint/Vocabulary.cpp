#include "core/lint/Vocabulary.h"

#include <algorithm>
#include <array>

#include "core/jobfile/Plist.h"

namespace mirvel::lint {

namespace {

using jobfile::Plist;

/// Keys that the record doesn't have: from launchd.plist(5), from SMAppService, and from jobs of the system.
constexpr auto otherKeys = std::to_array<std::string_view>({
    "AssociatedBundleIdentifiers",
    "BeginTransactionAtShutdown",
    "BundleProgram",
    "EventMonitor",
    "ExecuteAllowed",
    "IgnoreProcessGroupAtShutdown",
    "JetsamMemoryLimit",
    "JetsamPriority",
    "JetsamProperties",
    "LimitLoadFromHardware",
    "MinimalBootProfile",
    "MultipleInstances",
    "POSIXSpawnType",
    "PublishesEvents",
    "SHAuthorizationRight",
    "SandboxContainer",
    "SandboxFlags",
    "SandboxProfile",
    "ServiceDescription",
    "SpawnConstraint",
});

// The coding keys of a record are consecutive, so `last` determines their number.
template <typename Record, typename CodingKey>
NestedKeys keysOf(std::string_view owner, std::size_t depth, CodingKey last) {
  NestedKeys result{.owner = owner, .depth = depth, .keys = {}};
  for (std::size_t i = 0; i <= static_cast<std::size_t>(last); ++i) {
    result.keys.push_back(Record::text(static_cast<CodingKey>(i)));
  }
  return result;
}

}  // namespace

std::span<const std::string_view> topLevelKeys() {
  static const auto keys = [] {
    const auto known = Plist::knownKeys();
    std::vector<std::string_view> all(known.begin(), known.end());
    all.insert(all.end(), otherKeys.begin(), otherKeys.end());
    return all;
  }();
  return keys;
}

std::span<const NestedKeys> nestedKeys() {
  using Interval = Plist::StartCalendarInterval::Interval;
  using Limits = Plist::ResourceLimits;
  using Socket = Plist::Sockets::SubDictionary;
  using Service = Plist::MachServices::SubDictionary;
  static const std::array all{
      keysOf<Plist::KeepAlive>("KeepAlive", 1, Plist::KeepAlive::CodingKeys::AfterInitialDemand),
      keysOf<Interval>("StartCalendarInterval", 1, Interval::CodingKeys::Month),
      keysOf<Limits>("SoftResourceLimits", 1, Limits::CodingKeys::Stack),
      keysOf<Limits>("HardResourceLimits", 1, Limits::CodingKeys::Stack),
      keysOf<Socket>("Sockets", 2, Socket::CodingKeys::MulticastGroup),
      keysOf<Service>("MachServices", 2, Service::CodingKeys::TaskSpecialPort),
  };
  return all;
}

const NestedKeys* nestedKeysOf(std::string_view owner) {
  const auto all = nestedKeys();
  const auto found = std::find_if(all.begin(), all.end(), [&](const NestedKeys& keys) { return keys.owner == owner; });
  return found == all.end() ? nullptr : &*found;
}

}  // namespace mirvel::lint
