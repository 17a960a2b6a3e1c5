#pragma once

namespace mirvel {

class Catalogue;
class CurrentMode;
class Editing;
class Fetcher;
class Selection;
struct Foundation;
struct Notifications;
struct Platform;
struct Shell;

/// The parts of the program that every window, sheet and request works with. Made by the composition root; the parts
/// outlive all copies. For the main thread.
struct SessionContext {
  Foundation& foundation;
  const Platform& platform;
  Shell& shell;
  const Catalogue& catalogue;
  Selection& selection;
  CurrentMode& currentMode;
  Editing& editing;
  Fetcher& fetcher;
  Notifications& notifications;
};

}  // namespace mirvel
