#pragma once

#include "core/actions/ActionController.h"
#include "core/actions/DeletedJobs.h"
#include "core/actions/RevisionController.h"
#include "core/app/AppDelegate.h"
#include "core/app/HostStart.h"
#include "core/app/JobMoves.h"
#include "core/app/StoreTeller.h"
#include "core/catalogue/KindTexts.h"
#include "core/commands/CommandRepairs.h"
#include "core/creation/Creation.h"
#include "core/editor/Drafts.h"
#include "core/editor/IconEditing.h"
#include "core/editor/NotesStore.h"
#include "core/mainwindow/MainWindowController.h"
#include "core/mainwindow/MenuController.h"
#include "core/schedule/ScheduledController.h"
#include "core/session/AppState.h"
#include "core/session/Catalogue.h"
#include "core/session/Editing.h"
#include "core/session/Fetcher.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

/// The one program: what is there once, and how its parts reach each other. Made before anything is on the screen. For
/// the main thread.
class Program {
 public:
  /// Both outlive the program.
  Program(Foundation& theFoundation, const Platform& thePlatform);
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// What shows the catalogue now: the mode that the user chose, or the first that is there. Null: none is.
  ModeType* currentMode() const;

  Foundation& foundation;
  const Platform platform;
  AppState state = {};
  Catalogue catalogue = {};
  Selection selection = {};
  Notifications notifications = {};
  Shell shell = {};
  StoreTeller storeTeller;
  KindTexts kinds;
  MainWindowController mainWindow;
  Fetcher fetcher;
  AppDelegate appDelegate;
  CommandRepairs repairs;
  Creation creation = {};
  RevisionController revisions;
  DeletedJobs deletedJobs;
  NotesStore notes;
  JobMoves jobMoves;
  Editing editing;
  Drafts drafts;
  IconEditing icons;
  ScheduledController scheduledController;
  ActionController actions;
  HostStart hostStart;
  MenuController menus;

 private:
  void iconChanged(const std::shared_ptr<Job>& job);

  Subscription m_reverted;
};

}  // namespace mirvel
