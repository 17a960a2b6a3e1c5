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

/// The key `MachServices`: the Mach services that launchd registers on behalf of the job, by name. A message to one of
/// them starts the job. Each name is in one of the three buckets.
struct MachServices {
  /// A service with options. launchd.plist(5) documents the first two keys only.
  struct SubDictionary {
    enum class CodingKeys {
      ResetAtClose,
      HideUntilCheckIn,
      DrainMessagesOnCrash,
      ExceptionServer,
      HostSpecialPort,
      TaskSpecialPort
    };
    /// The key as in the file.
    static std::string_view text(CodingKeys key);

    /// When the job ends, clients get an error instead of waiting for its next start. Default: false.
    std::optional<bool> resetAtClose = {};
    /// Look-ups fail until the job has checked in. Default: false.
    std::optional<bool> hideUntilCheckIn = {};
    /// Which pending messages are discarded after a crash, such as "All".
    std::optional<std::string> drainMessagesOnCrash = {};
    std::optional<StringMap<std::string>> exceptionServer = {};
    std::optional<std::int64_t> hostSpecialPort = {};  ///< number of a special port of the host
    std::optional<std::int64_t> taskSpecialPort = {};  ///< number of a special port of each task

    bool operator==(const SubDictionary&) const = default;
  };

  StringMap<bool> bools = {};  ///< the usual form: the name and true
  StringMap<std::string> strings = {};
  StringMap<SubDictionary> dictionaries = {};

  bool operator==(const MachServices&) const = default;
};

/// Fails only if the value isn't a dictionary. Services that fit no bucket are skipped, and so are those of which an
/// option has the wrong type, except at a tolerant place, which skips the option.
void decode(const propertylist::Node& node, const Place& place, MachServices& result);
void decode(const propertylist::Node& node, const Place& place, MachServices::SubDictionary& result);
/// A dictionary, possibly empty.
std::optional<propertylist::Value> encode(const MachServices& services);
std::optional<propertylist::Value> encode(const MachServices::SubDictionary& service);

}  // namespace mirvel::jobfile
