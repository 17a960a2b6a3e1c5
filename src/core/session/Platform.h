#pragma once

#include "core/base/ThreadWorkQueue.h"
#include "core/ports/Clock.h"
#include "core/ports/Console.h"
#include "core/ports/FolderMonitor.h"
#include "core/ports/HelperConnection.h"
#include "core/ports/Interface.h"
#include "core/ports/LoginItems.h"
#include "core/ports/MainQueue.h"
#include "core/ports/Workspace.h"
#include "core/process/ProcessRunner.h"

namespace mirvel {

/// The ports through which the program accesses the platform. The shell provides implementations with Qt, tests provide
/// fakes. All must outlive the program.
struct Platform {
  MainQueue& mainQueue;
  WorkQueue& fetchQueue;  ///< a background thread for scans
  WorkQueue& fileQueue;   ///< a background thread for accesses to disks that may be slow
  WorkQueue& checkQueue;  ///< background threads for checks that may wait for a disk forever; tasks run side by side
  Interface& interface;
  Workspace& workspace;
  FolderMonitors& folderMonitors;
  ProcessRunner& processRunner;  ///< used on the main thread and on the fetch queue
  LoginItems& loginItems;        ///< used on the fetch queue
  AgentSwitch* agentSwitch;      ///< null if the platform can't switch the agent
  Console& console;
  const Clock& clock;
  HelperConnections* helpers;  ///< null without helpers: nothing can be saved then
};

}  // namespace mirvel
