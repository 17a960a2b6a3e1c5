#pragma once

#include "core/session/SessionContext.h"

namespace mirvel {

class Busy;
class CommandRepairs;
class RevisionController;

/// The parts of the program that requests, saves and deletions depend on. All of them must outlive the
/// `ActionController`.
struct ActionContext : SessionContext {
  RevisionController& revisions;
  CommandRepairs& repairs;
  Busy& saving;    ///< saves and restorations, from the password or the first request to the last reply
  Busy& deleting;  ///< deletions, likewise
};

}  // namespace mirvel
