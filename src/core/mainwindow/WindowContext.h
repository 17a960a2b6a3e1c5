#pragma once

#include "core/session/SessionContext.h"

namespace mirvel {

class Busy;
class HostStart;
class JobDeletion;
class JobProblems;
class KindTexts;
class MainWindowController;
class RevisionController;

/// The parts of the program that modes, menus and widgets of the main window use. Made by the composition root. The
/// record and everything it refers to must outlive its users, which keep a reference to it.
struct WindowContext : SessionContext {
  RevisionController& revisions;
  JobDeletion& deletion;
  const HostStart& hostStart;
  JobProblems& problems;
  KindTexts& kinds;
  MainWindowController& mainWindow;
  const Busy& saving;
  const Busy& scanning;
};

}  // namespace mirvel
