#pragma once

namespace mirvel {

class ActionController;
class Busy;
class Catalogue;
class CommandRepairs;
class CurrentMode;
class DeletedJobs;
class Editing;
class Fetcher;
class KindTexts;
class ScheduledController;
class Selection;
struct Creation;
struct Foundation;
struct Platform;
struct Shell;

/// The parts of the program that the sheets that create jobs depend on. All of them, and the context itself, must
/// outlive the sheets.
struct CreationContext {
  Foundation& foundation;
  const Platform& platform;
  Shell& shell;
  const Catalogue& catalogue;
  const Selection& selection;
  CurrentMode& currentMode;
  Editing& editing;
  Fetcher& fetcher;
  ActionController& actions;
  CommandRepairs& repairs;
  DeletedJobs& deletedJobs;
  ScheduledController& scheduledController;
  KindTexts& kinds;
  Creation& creation;
  Busy& saving;
};

}  // namespace mirvel
