#pragma once

#include "core/actions/RevisionHistory.h"
#include "core/session/SessionContext.h"

namespace mirvel {

class ExtraFolders;
class Uninstaller;

/// The parts of the program that the preferences use. Made by the composition root; the record and everything it refers
/// to outlive its users.
struct PreferencesContext : SessionContext {
  RevisionHistories revisions;  ///< of jobs and of scripts
  ExtraFolders& extraFolders;
  Uninstaller& uninstaller;
};

}  // namespace mirvel
