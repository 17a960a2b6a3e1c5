#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/jobfile/StringMap.h"
#include "core/propertylist/Node.h"
#include "core/propertylist/Value.h"

namespace mirvel::jobfile {

class Place;

/// The Mach services that launchd registers for the job, by their names. Each name is in one of the three buckets.
struct MachServices {
  struct SubDictionary {
    enum class CodingKeys {
      resetAtClose,
      hideUntilCheckIn,
      drainMessagesOnCrash,
      exceptionServer,
      hostSpecialPort,
      taskSpecialPort
    };
    static std::string_view text(CodingKeys key);
    static std::optional<CodingKeys> codingKey(std::string_view text);

    std::optional<bool> resetAtClose = {};
    std::optional<bool> hideUntilCheckIn = {};
    std::optional<std::string> drainMessagesOnCrash = {};
    std::optional<StringMap<std::string>> exceptionServer = {};
    std::optional<std::int64_t> hostSpecialPort = {};
    std::optional<std::int64_t> taskSpecialPort = {};

    bool operator==(const SubDictionary&) const = default;
  };

  StringMap<bool> bools = {};
  StringMap<std::string> strings = {};
  StringMap<SubDictionary> dictionaries = {};

  bool operator==(const MachServices&) const = default;
};

/// A service that fits no bucket is dropped; only a value that isn't a dictionary is a failure.
void decode(const propertylist::Node& node, const Place& place, MachServices& result);
void decode(const propertylist::Node& node, const Place& place, MachServices::SubDictionary& result);
std::optional<propertylist::Value> encode(const MachServices& services);
std::optional<propertylist::Value> encode(const MachServices::SubDictionary& service);

}  // namespace mirvel::jobfile
