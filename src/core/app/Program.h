#pragma once

#include "core/actions/ActionController.h"
#include "core/actions/DeletedJobs.h"
#include "core/actions/HostStart.h"
#include "core/actions/JobDeletion.h"
#include "core/actions/RevisionController.h"
#include "core/app/AppDelegate.h"
#include "core/app/JobMoves.h"
#include "core/app/StoreTeller.h"
#include "core/catalogue/KindTexts.h"
#include "core/commands/CommandRepairs.h"
#include "core/creation/Creation.h"
#include "core/creation/CreationContext.h"
#include "core/editor/Drafts.h"
#include "core/editor/IconEditing.h"
#include "core/editor/NotesStore.h"
#include "core/mainwindow/MainWindowController.h"
#include "core/mainwindow/MenuController.h"
#include "core/mainwindow/WindowContext.h"
#include "core/schedule/ScheduledController.h"
#include "core/session/Busy.h"
#include "core/session/Catalogue.h"
#include "core/session/CurrentMode.h"
#include "core/session/Editing.h"
#include "core/session/Fetcher.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

/// The composition of the program: what there is once, each part made of those above it. Made before anything is on the
/// screen. For the main thread.
class Program {
 public:
  /// Both outlive the program.
  Program(Foundation& theFoundation, const Platform& thePlatform);
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  Foundation& foundation;
  const Platform platform;

  // State.
  Busy saving = {};
  Busy deleting = {};
  Busy scanning = {};
  Catalogue catalogue = {};
  Selection selection = {};
  Notifications notifications = {};
  Shell shell = {};
  CurrentMode currentMode;

  // What the program keeps on disk.
  StoreTeller storeTeller;
  RevisionController revisions;
  DeletedJobs deletedJobs;
  NotesStore notes;
  JobMoves jobMoves;

  // Texts and rules.
  KindTexts kinds;
  CommandRepairs repairs;
  ScheduledController scheduledController;

  // Reading and editing jobs.
  Editing editing;
  Fetcher fetcher;
  Drafts drafts;
  IconEditing icons;

  // Requests to the helpers.
  ActionController actions;
  JobDeletion deletion;
  HostStart hostStart;

  // The window and its sheets.
  Creation creation = {};
  const CreationContext creationContext;
  MainWindowController mainWindow;
  const WindowContext windowContext;
  MenuController menus;

  AppDelegate appDelegate;

 private:
  void iconChanged(const std::shared_ptr<Job>& job);

  Subscription m_reverted;
};

}  // namespace mirvel
