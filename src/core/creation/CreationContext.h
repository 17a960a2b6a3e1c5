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

/// What the sheets that create jobs use. All outlive those, and so does the record itself.
struct CreationContext {
  Foundation& foundation;
  const Platform& platform;
  Shell& shell;
  const Catalogue& catalogue;
  Selection& selection;
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
