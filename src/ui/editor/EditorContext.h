#pragma once

#include "core/session/SessionContext.h"

namespace mirvel {
class ActionController;
class Busy;
class CommandRepairs;
class FailedOutput;
class IconEditing;
class JobProblems;
class JobRuns;
class KindTexts;
class MainWindowController;
class MenuController;
class NotesStore;
class RunMoments;
class ScheduledController;
}  // namespace mirvel

namespace mirvel::ui {

class IconLoader;

/// The parts of the program that the details and the editor use. The main window creates it, and widgets keep copies;
/// all parts outlive them.
struct EditorContext : SessionContext {
  const Busy& saving;
  const Busy& scanning;
  ActionController& actions;
  MainWindowController& mainWindow;
  MenuController& menus;
  KindTexts& kinds;
  const CommandRepairs& repairs;
  ScheduledController& schedules;
  NotesStore& notes;
  JobProblems& problems;
  JobRuns& runs;
  const RunMoments& moments;
  FailedOutput& failedOutput;
  IconEditing& iconEditing;
  IconLoader& icons;
};

}  // namespace mirvel::ui
