#pragma once

#include "core/actions/HelperConnection.h"
#include "core/catalogue/LoginItems.h"
#include "core/support/AgentSwitch.h"
#include "core/support/Clock.h"
#include "core/support/Console.h"
#include "core/support/FolderMonitor.h"
#include "core/support/Interface.h"
#include "core/support/MainQueue.h"
#include "core/support/ProcessRunner.h"
#include "core/support/WorkQueue.h"
#include "core/support/Workspace.h"

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
