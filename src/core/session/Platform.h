#pragma once

#include "core/base/ThreadWorkQueue.h"
#include "core/ports/AgentSwitch.h"
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

/// What the program asks of the platform. All outlive the program that is given them.
struct Platform {
  MainQueue& mainQueue;
  WorkQueue& fetchQueue;  ///< "Fetch queue"
  WorkQueue& fileQueue;   ///< for questions to disks that may be slow
  Interface& interface;
  Workspace& workspace;
  FolderMonitors& folderMonitors;
  ProcessRunner& processRunner;  ///< also used on the fetch queue
  LoginItems& loginItems;        ///< used on the fetch queue
  AgentSwitch* agentSwitch;      ///< null where the agent can't be switched
  Console& console;
  const Clock& clock;
  HelperConnections* helpers;  ///< null where there are none: nothing can be saved
};

}  // namespace mirvel
