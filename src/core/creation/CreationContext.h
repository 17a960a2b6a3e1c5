#pragma once

#include "core/session/SessionContext.h"

namespace mirvel {

class ActionController;
class Busy;
class CommandRepairs;
class DeletedJobs;
class KindTexts;
class ScheduledController;
struct Creation;

/// The parts of the program that the sheets that create jobs depend on. All of them, and the context itself, must
/// outlive the sheets.
struct CreationContext : SessionContext {
  ActionController& actions;
  CommandRepairs& repairs;
  DeletedJobs& deletedJobs;
  ScheduledController& scheduledController;
  KindTexts& kinds;
  Creation& creation;
  Busy& saving;
};

}  // namespace mirvel
