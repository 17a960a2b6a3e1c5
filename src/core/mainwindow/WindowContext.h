#pragma once

namespace mirvel {

class Busy;
class Catalogue;
class CurrentMode;
class Editing;
class Fetcher;
class HostStart;
class JobDeletion;
class KindTexts;
class MainWindowController;
class RevisionController;
class Selection;
struct Foundation;
struct Notifications;
struct Platform;
struct Shell;

/// The parts of the program that modes, menus and widgets of the main window use. Made by the composition root. The
/// record and everything it refers to must outlive its users, which keep a reference to it.
struct WindowContext {
  Foundation& foundation;
  const Platform& platform;
  Shell& shell;
  const Catalogue& catalogue;
  Selection& selection;
  CurrentMode& currentMode;
  Editing& editing;
  Fetcher& fetcher;
  Notifications& notifications;
  RevisionController& revisions;
  JobDeletion& deletion;
  const HostStart& hostStart;
  KindTexts& kinds;
  MainWindowController& mainWindow;
  const Busy& saving;
  const Busy& scanning;
};

}  // namespace mirvel
