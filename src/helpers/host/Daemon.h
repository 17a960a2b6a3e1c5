#pragma once

#include <filesystem>
#include <functional>
#include <vector>

#include "core/base/Result.h"
#include "core/process/Environment.h"
#include "helpers/host/Session.h"
#include "helpers/hostdata/HostPlaces.h"

namespace mirvel::host {

/// How a host is started.
struct HostSetup {
  HostPlaces places;
  Environment environment;             ///< of this process: identifies the session, and is the basis of that of jobs
  std::filesystem::path machine = {};  ///< the folder that represents a machine: the host ends with it; empty: none
  /// Started by a login: a host of another session makes room for this one, immediately if that session is over,
  /// otherwise when it ends.
  bool beginsSession = false;
  std::vector<std::filesystem::path> jobFolders = {};  ///< whose enabled jobs are loaded at the start
  std::filesystem::path sessionRecords = Session::usualRecords;
};

/// Runs a host in the calling thread until a client or SIGTERM, SIGINT or SIGHUP ends it, its session or its machine is
/// over, or another host has taken its place. Returns immediately if there is a host already; with `beginsSession` it
/// may first wait until that one ends. Calls `isReady` when a host can be reached, and again when it is this one. Fails
/// if it can't become the host: the folder belongs to another user, a file can't be created, the creator of the machine
/// has ended, or the host of an earlier session doesn't end.
Result<void> runHost(const HostSetup& setup, const std::function<void()>& isReady);

}  // namespace mirvel::host
