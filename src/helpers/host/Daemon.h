#pragma once

#include <filesystem>
#include <functional>
#include <vector>

#include "core/base/Result.h"
#include "core/process/Environment.h"
#include "helpers/host/Session.h"
#include "helpers/hostdata/HostPlaces.h"

namespace mirvel::host {

struct HostSetup {
  HostPlaces places;
  Environment environment;             ///< of the process
  std::filesystem::path machine = {};  ///< the folder that stands for a machine; empty: there is none
  /// A session of the user's begins: the jobs of these folders are loaded that are enabled. The host of another session
  /// makes room, at once if that is gone, or else when it ends.
  bool beginsSession = false;
  std::vector<std::filesystem::path> jobFolders = {};
  std::filesystem::path sessionRecords = Session::usualRecords;
};

/// Runs a host until somebody asks it to end, a signal does, or its session or its machine is over; returns at once if
/// there is one already, unless it is to come after that. `isReady` is called when there is a host that can be reached,
/// and again when this is the one. Fails if it never can.
Result<void> runHost(const HostSetup& setup, const std::function<void()>& isReady);

}  // namespace mirvel::host
