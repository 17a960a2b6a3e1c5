#pragma once

#include "core/actions/ActionController.h"
#include "core/actions/DeletedJobs.h"
#include "core/actions/HostStart.h"
#include "core/actions/JobDeletion.h"
#include "core/actions/RevisionController.h"
#include "core/app/AppDelegate.h"
#include "core/app/JobMoves.h"
#include "core/app/JobURLOpener.h"
#include "core/app/SettingEffects.h"
#include "core/app/StoreAlerts.h"
#include "core/app/Termination.h"
#include "core/catalogue/KindTexts.h"
#include "core/commands/CommandRepairs.h"
#include "core/creation/Creation.h"
#include "core/creation/CreationContext.h"
#include "core/documents/ScriptDocuments.h"
#include "core/editor/Drafts.h"
#include "core/editor/IconEditing.h"
#include "core/editor/JobProblems.h"
#include "core/editor/NotesStore.h"
#include "core/mainwindow/MainWindowController.h"
#include "core/mainwindow/MenuController.h"
#include "core/mainwindow/WindowContext.h"
#include "core/preferences/PreferencesContext.h"
#include "core/preferences/Uninstaller.h"
#include "core/runs/FailedOutput.h"
#include "core/runs/JobControl.h"
#include "core/runs/JobRuns.h"
#include "core/runs/RunDisplay.h"
#include "core/runs/RunMoments.h"
#include "core/schedule/ScheduledController.h"
#include "core/session/Busy.h"
#include "core/session/Catalogue.h"
#include "core/session/CurrentMode.h"
#include "core/session/Editing.h"
#include "core/session/ExtraFolders.h"
#include "core/session/Fetcher.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/SessionContext.h"
#include "core/session/Shell.h"

namespace mirvel {

/// The composition root: owns every object of which there is one, and passes each what it depends on. Each part may use
/// those declared before it, and is destroyed before them. Constructed before any window; for the main thread. Only
/// `main`, the demo and test fixtures use this class; all others take the parts that they need.
class Program {
 public:
  /// Both must outlive the program.
  Program(Foundation& theFoundation, const Platform& thePlatform);
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  Foundation& foundation;
  const Platform platform;

  // The state of the session. Each part is the only one that changes its state.
  Busy saving = {};
  Busy deleting = {};
  Busy scanning = {};
  Catalogue catalogue = {};
  Selection selection = {};
  Notifications notifications = {};
  Shell shell = {};
  CurrentMode currentMode;

  // The files that the program keeps for itself.
  StoreAlerts storeAlerts;
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
  ExtraFolders extraFolders;
  Fetcher fetcher;
  const SessionContext session;
  Drafts drafts;
  JobProblems problems;
  IconEditing icons;

  // Requests to the helpers.
  ActionController actions;
  JobDeletion deletion;
  HostStart hostStart;

  // The runs of jobs.
  JobRuns runs;
  RunMoments moments;
  JobControl control;
  FailedOutput failedOutput;
  RunDisplay runDisplay;

  ScriptDocuments documents;

  // The window and its sheets.
  Creation creation = {};
  const CreationContext creationContext;
  MainWindowController mainWindow;
  const WindowContext windowContext;
  MenuController menus;

  // The preferences.
  SettingEffects settingEffects;
  Uninstaller uninstaller;
  const PreferencesContext preferencesContext;

  // Start and end.
  AppDelegate appDelegate;
  Termination termination;
  JobURLOpener jobURLOpener;

 private:
  void iconChanged(const std::shared_ptr<Job>& job);

  Subscription m_reverted, m_runsChanged;
};

}  // namespace mirvel
