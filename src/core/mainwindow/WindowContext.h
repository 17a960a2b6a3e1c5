#pragma once

#include "core/session/SessionContext.h"

namespace mirvel {

class Busy;
class HostStart;
class JobControl;
class JobDeletion;
class JobProblems;
class JobRuns;
class KindTexts;
class MainWindowController;
class RevisionController;
class RunMoments;

/// The parts of the program that modes, menus and widgets of the main window use. Made by the composition root. The
/// record and everything it refers to must outlive its users, which keep a reference to it.
struct WindowContext : SessionContext {
  RevisionController& revisions;
  JobDeletion& deletion;
  const HostStart& hostStart;
  JobProblems& problems;
  KindTexts& kinds;
  MainWindowController& mainWindow;
  JobRuns& runs;
  JobControl& control;
  const RunMoments& moments;
  const Busy& saving;
  const Busy& scanning;
};

}  // namespace mirvel
