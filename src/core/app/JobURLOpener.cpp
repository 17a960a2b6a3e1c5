#include "core/app/JobURLOpener.h"

#include <algorithm>
#include <utility>

#include "core/app/AppTexts.h"
#include "core/catalogue/Job.h"
#include "core/mainwindow/MainWindowController.h"
#include "core/runs/JobControl.h"
#include "core/runs/RunStateTexts.h"
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

JobURLOpener::JobURLOpener(const SessionContext& session, MainWindowController& mainWindow, JobControl& control)
    : m_session(session), m_mainWindow(mainWindow), m_control(control), m_delay(session.platform.mainQueue) {}

void JobURLOpener::applicationOpenURLs(const std::vector<std::string>& urls) {
  const auto address = urls.empty() ? std::nullopt : JobAddress::read(urls.front());
  if (!address) return;
  if (m_session.editing.hasUnsavedChanges()) return m_mainWindow.unsavedChangesAlert();
  m_delay(0.3, [this, address = *address] {
    m_opened = address;
    selectOpened();
  });
}

void JobURLOpener::selectOpened() {
  if (!m_opened) return;
  if (!m_session.fetcher.hasScanned()) {  // the URL started the program
    m_scanned = m_session.notifications.loadingChanged.subscribe([this] { m_delay(0, [this] { selectOpened(); }); });
    return;
  }
  m_scanned = {};
  show(*std::exchange(m_opened, std::nullopt));
}

void JobURLOpener::show(const JobAddress& address) {
  const URL url = URL::file(address.path);
  select(url);
  const Shell& shell = m_session.shell;
  const bool hasSheet = shell.mainWindow && shell.mainWindow->hasSheet();
  const auto job = m_session.selection.job();
  if (hasSheet) return;
  if (!job || !job->url.equalTo(url)) {
    if (isHiddenWithTheSystem(url)) offerSystemJobs(address);
    return;
  }
  if (address.part == JobAddress::Part::Disable) return askToDisable(*job);
  const auto sheet = shell.sheets.find(Sheet::Log);
  if (address.part == JobAddress::Part::Log && sheet != shell.sheets.end()) sheet->second();
}

void JobURLOpener::select(const URL& url) {
  CurrentMode& current = m_session.currentMode;
  const auto job = m_session.catalogue.jobAt(url);
  if (job && current.isFilteredOut(job)) {
    if (m_session.shell.mainWindow) m_session.shell.mainWindow->clearFilter();
    current.clearFilter();
    current.setSubset(m_session.catalogue.jobs(), std::nullopt);
    current.update(m_session.catalogue.jobs());
  }
  if (ModeType* const mode = current.view()) mode->select(url);
}

bool JobURLOpener::isHiddenWithTheSystem(const URL& url) const {
  if (m_session.foundation.defaults.showSystemJobs()) return false;
  return std::any_of(Kind::monitoredKinds.begin(), Kind::monitoredKinds.end(), [&](Kind kind) {
    return kind.isSystem() && kind.folderURL(m_session.foundation.roots) == url.path().parent_path();
  });
}

void JobURLOpener::offerSystemJobs(const JobAddress& address) {
  const AppTexts texts(m_session.foundation.localize);
  const std::string name = URL::file(address.path).lastPathComponent();
  const auto answered = m_delay.whileOwned([this, address](int button) {
    if (button != Interface::alternateButton) return;
    m_opened = address;
    m_scanned = m_session.notifications.jobsUpdated.subscribe([this] { m_delay(0, [this] { selectOpened(); }); });
    (void)m_session.foundation.defaults.setShowSystemJobs(true);  // a failure has been reported; causes a scan
  });
  m_session.platform.interface.beginSheet({.message = texts.systemJobIsHidden(name),
                                           .informativeText = texts.showSystemJobsToSeeIt(),
                                           .defaultTitle = m_session.foundation.localize.cancel(),
                                           .alternateTitle = texts.showSystemJobs()},
                                          answered);
}

/// Anybody can make such a URL, so nothing happens without the user's confirmation.
void JobURLOpener::askToDisable(const Job& job) {
  if (job.isDisabled()) return;
  const AppTexts texts(m_session.foundation.localize);
  Interface& interface = m_session.platform.interface;
  const std::string obstacle = m_control.obstacle(RunOrder::Disable, job);
  if (!obstacle.empty()) return interface.error(texts.cantDisable(job.name), obstacle);
  const auto answered = m_delay.whileOwned([this, url = job.url](int button) {
    if (button == Interface::alternateButton) m_control.give(RunOrder::Disable, m_session.catalogue.jobAt(url));
  });
  interface.beginSheet({.message = texts.mayDisable(job.name),
                        .informativeText = texts.itWontBeStartedAnyMore(),
                        .defaultTitle = m_session.foundation.localize.cancel(),
                        .alternateTitle = RunStateTexts(m_session.foundation.localize).disable(),
                        .safeButton = Interface::defaultButton},
                       answered);
}

}  // namespace mirvel
