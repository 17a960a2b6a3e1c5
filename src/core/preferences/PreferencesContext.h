#pragma once

#include "core/session/SessionContext.h"

namespace mirvel {

class RevisionController;
class Uninstaller;

/// The parts of the program that the preferences use. Made by the composition root; the record and everything it refers
/// to outlive its users.
struct PreferencesContext : SessionContext {
  RevisionController& revisions;
  Uninstaller& uninstaller;
};

}  // namespace mirvel
