#pragma once

#include "core/actions/ActionController.h"
#include "core/actions/DeletedJobs.h"
#include "core/actions/RevisionController.h"
#include "core/app/AppDelegate.h"
#include "core/app/AppState.h"
#include "core/app/Fetcher.h"
#include "core/app/Foundation.h"
#include "core/app/HostStart.h"
#include "core/app/JobMoves.h"
#include "core/app/Platform.h"
#include "core/app/Shell.h"
#include "core/app/StoreTeller.h"
#include "core/catalogue/KindTexts.h"
#include "core/creation/CommandRepairs.h"
#include "core/creation/Creation.h"
#include "core/editor/Drafts.h"
#include "core/editor/Editing.h"
#include "core/editor/NotesStore.h"
#include "core/mainwindow/MainWindowController.h"
#include "core/mainwindow/MenuController.h"
#include "core/schedule/ScheduledController.h"
#include "core/support/Notifications.h"

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
  ScheduledController scheduledController;
  ActionController actions;
  HostStart hostStart;
  MenuController menus;
};

}  // namespace mirvel
