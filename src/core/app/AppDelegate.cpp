#include "core/app/AppDelegate.h"

#include "core/actions/ActionController.h"
#include "core/actions/JobOnDisk.h"
#include "core/catalogue/Kind.h"
#include "core/editor/Drafts.h"
#include "core/mainwindow/MainWindowController.h"
#include "core/runs/JobRuns.h"
#include "core/session/Catalogue.h"
#include "core/session/Fetcher.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "core/session/Platform.h"
#include "core/session/Shell.h"

namespace mirvel {

AppDelegate::AppDelegate(const SessionContext& session, ExtraFolders& extraFolders, ActionController& actions,
                         Drafts& drafts, const MainWindowController& mainWindow, JobRuns& runs)
    : m_session(session),
      m_extraFolders(extraFolders),
      m_actions(actions),
      m_drafts(drafts),
      m_mainWindow(mainWindow),
      m_runs(runs),
      m_agent(session.foundation.defaults, session.platform.agentSwitch, session.platform.mainQueue),
      m_limit(session.platform.mainQueue),
      m_delay(session.platform.mainQueue) {
  const auto made = makeAgentsFolder(session.foundation.roots);
  if (!made) session.platform.interface.present(made.error());
}

void AppDelegate::applicationDidFinishLaunching() {
  m_actions.finishMoves();
  m_actions.removeLeftTests();
  m_drafts.offer();
  m_scanned = m_session.notifications.jobsUpdated.subscribe([this] { m_runs.begin(); });
  if (m_session.catalogue.jobs().empty()) m_session.fetcher.refresh();
  m_delay(0.01, [this] { setUpMonitors(); });
}

void AppDelegate::setUpMonitors() {
  for (const Kind kind : Kind::monitoredKinds) {
    const auto folder = kind.folderURL(m_session.foundation.roots);
    if (!folder) continue;
    m_monitors.push_back(m_session.platform.folderMonitors.watch(*folder, [this] { folderDidChange(); }));
  }
  m_extraMonitors.emplace(m_session.platform.folderMonitors, m_extraFolders, [this] { folderDidChange(); });
  m_delay(1.0, [this] { updateAgent(); });
}

void AppDelegate::updateAgent() {
  m_runs.begin();
  m_agent.restore();
  const bool checks = m_session.foundation.defaults.automaticallyCheckForUpdate();
  if (checks && m_session.shell.checkForUpdate) m_session.shell.checkForUpdate(false);
}

void AppDelegate::updateWillInstall() {
  m_agent.prepareUpdate();
}

void AppDelegate::folderDidChange() {
  if (m_mainWindow.isTerminating()) return;
  m_limit.interval("MainMonitor", 1.0, [this] { m_delay(0.1, [this] { m_session.fetcher.refresh(); }); });
}

}  // namespace mirvel
