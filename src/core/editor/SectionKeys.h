#pragma once

#include <tuple>

#include "core/jobfile/PlistKeys.h"

namespace mirvel {

/// Keys of the record, in the order in which a section shows them.
template <jobfile::Plist::CodingKeys... keys>
struct KeyList {
  /// A key that is in the file is set, be it false, 0 or empty.
  static bool isAnySet(const jobfile::Plist& plist) { return ((plist.*row<keys>().field).has_value() || ...); }

  /// Calls `visit` with each row of the table of keys: its `text` and its `field`.
  template <typename Visit>
  static void forEach(const Visit& visit) {
    (visit(row<keys>()), ...);
  }

 private:
  template <jobfile::Plist::CodingKeys key>
  static constexpr const auto& row() {
    return std::get<static_cast<std::size_t>(key)>(jobfile::plistKeys);
  }
};

namespace SectionKeys {

using K = jobfile::Plist::CodingKeys;

using Paths = KeyList<K::standardErrorPath, K::standardInPath, K::standardOutPath, K::workingDirectory>;
using PathLists = KeyList<K::queueDirectories, K::watchPaths>;
using Limits = KeyList<K::lowPriorityIO, K::lowPriorityBackgroundIO, K::launchOnlyOnce, K::nice, K::throttleInterval,
                       K::processType, K::limitLoadToSessionType, K::limitLoadToHardware, K::softResourceLimits,
                       K::hardResourceLimits>;
using Root = KeyList<K::initGroups, K::userName, K::groupName>;
using Miscellaneous =
    KeyList<K::abandonProcessGroup, K::enablePressuredExit, K::enableTransactions, K::legacyTimers,
            K::materializeDatalessFiles, K::sessionCreate, K::waitForDebugger, K::exitTimeOut, K::umask>;
using Deprecated =
    KeyList<K::debug, K::enableGlobbing, K::onDemand, K::serviceIPC, K::timeOut, K::hopefullyExitsFirst,
            K::hopefullyExitsLast, K::rootDirectory, K::limitLoadFromHosts, K::limitLoadToHosts, K::inetdCompatibility>;

}  // namespace SectionKeys

}  // namespace mirvel
