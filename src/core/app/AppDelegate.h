#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "core/app/SettingEffects.h"
#include "core/base/Signal.h"
#include "core/notifications/AgentRegistration.h"
#include "core/ports/FolderMonitor.h"
#include "core/ports/MainQueue.h"
#include "core/session/SessionContext.h"

namespace mirvel {

class ActionController;
class Drafts;
class ExtraFolders;
class JobRuns;
class MainWindowController;

/// Starts the application, and scans again when a job folder changes. For the main thread.
class AppDelegate {
 public:
  /// Creates the user's agents folder if it is missing. If that fails, the error is presented to the user and the
  /// program runs without the folder. All arguments must outlive this object.
  AppDelegate(const SessionContext& session, ExtraFolders& extraFolders, ActionController& actions, Drafts& drafts,
              const MainWindowController& mainWindow, JobRuns& runs);

  /// To be called once, at the start. Completes interrupted moves, offers drafts, and starts the first scan. The folder
  /// monitors follow after 0.01 s; one second later the background agent is started if it is on (see
  /// `AgentRegistration`), and updates are looked for. The reports about runs are read once the first scan has been
  /// published, at the latest then. Folder changes are then coalesced to at most one scan per second, and ignored while
  /// the user is being asked whether to quit.
  void applicationDidFinishLaunching();
  /// To be called before an update is installed: when the program ends after the user has been to the download page.
  /// Switches the background agent off, so that its files can be replaced; the next start switches it on again.
  void updateWillInstall();

 private:
  void setUpMonitors();
  void updateAgent();
  void folderDidChange();

  const SessionContext m_session;
  ExtraFolders& m_extraFolders;
  ActionController& m_actions;
  Drafts& m_drafts;
  const MainWindowController& m_mainWindow;
  JobRuns& m_runs;
  AgentRegistration m_agent;
  Subscription m_scanned;
  Limit m_limit;
  std::vector<std::unique_ptr<FolderMonitor>> m_monitors;
  std::optional<ExtraFolderMonitors> m_extraMonitors;
  Delay m_delay;
};

}  // namespace mirvel
