#pragma once

#include <vector>

#include "core/session/SessionContext.h"

namespace mirvel {

class ExtraFolders;
class RevisionStore;
class Uninstaller;

/// The parts of the program that the preferences use. Made by the composition root; the record and everything it refers
/// to outlive its users.
struct PreferencesContext : SessionContext {
  std::vector<RevisionStore*> revisions;  ///< of jobs and of scripts
  ExtraFolders& extraFolders;
  Uninstaller& uninstaller;
};

}  // namespace mirvel
