#pragma once

namespace mirvel {
class ActionController;
class Busy;
class CommandRepairs;
class Editing;
class Fetcher;
class IconEditing;
class KindTexts;
class MainWindowController;
class MenuController;
class NotesStore;
class ScheduledController;
class Selection;
struct Foundation;
struct Notifications;
struct Platform;
struct Shell;
}  // namespace mirvel

namespace mirvel::ui {

class IconLoader;

/// The parts of the program that the details and the editor use. The main window creates it, and widgets keep copies;
/// all parts outlive them.
struct EditorContext {
  Foundation& foundation;
  const Platform& platform;
  const Busy& saving;
  const Busy& scanning;
  const Selection& selection;
  Notifications& notifications;
  Shell& shell;
  Editing& editing;
  ActionController& actions;
  Fetcher& fetcher;
  MainWindowController& mainWindow;
  MenuController& menus;
  KindTexts& kinds;
  const CommandRepairs& repairs;
  ScheduledController& schedules;
  NotesStore& notes;
  IconEditing& iconEditing;
  IconLoader& icons;
};

}  // namespace mirvel::ui
