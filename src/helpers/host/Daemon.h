#pragma once

#include <filesystem>
#include <functional>
#include <vector>

#include "core/support/Environment.h"
#include "core/support/Result.h"
#include "helpers/host/Places.h"

namespace mirvel::host {

struct HostSetup {
  Places places;
  Environment environment;             ///< of the process
  std::filesystem::path machine = {};  ///< the folder that stands for a machine; empty: there is none
  /// A session of the user's begins: the jobs of these folders are loaded that are enabled, and the host of another
  /// session, which is gone, makes room.
  bool beginsSession = false;
  std::vector<std::filesystem::path> jobFolders = {};
};

/// Runs a host until somebody asks it to end, a signal does, or its session or its machine is over; returns at once if
/// there is one already. `isReady` is called when it can be reached. Fails if it never can.
Result<void> runHost(const HostSetup& setup, const std::function<void()>& isReady);

}  // namespace mirvel::host
