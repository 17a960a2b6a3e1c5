#include "core/session/Fetcher.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "core/catalogue/CustomIcons.h"
#include "core/session/Catalogue.h"
#include "core/session/CurrentMode.h"
#include "core/session/Editing.h"
#include "core/session/ExtraFolders.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

/// Shared with the scans: a cancelled scan can still be running when the fetcher is destroyed.
struct Fetcher::Tools {
  Tools(const Foundation& foundation, const Platform& platform)
      : embeddedList(platform.processRunner, foundation.commands.launchctl),
        scan{.collator = foundation.collator,
             .loginItems = platform.loginItems,
             .embeddedList = embeddedList,
             .console = platform.console} {}

  EmbeddedList embeddedList;
  ScanTools scan;
};

Fetcher::Fetcher(const Foundation& foundation, const Platform& platform, ExtraFolders& extraFolders,
                 Catalogue& catalogue, Selection& selection, CurrentMode& currentMode, Editing& editing,
                 Notifications& notifications, const Shell& shell, Busy& scanning, const Busy& saving)
    : m_foundation(foundation),
      m_platform(platform),
      m_extraFolders(extraFolders),
      m_catalogue(catalogue),
      m_selection(selection),
      m_currentMode(currentMode),
      m_editing(editing),
      m_notifications(notifications),
      m_shell(shell),
      m_busy(scanning),
      m_saving(saving),
      m_tools(std::make_shared<Tools>(foundation, platform)),
      m_delay(platform.mainQueue),
      m_recovered(extraFolders.recovered().subscribe([this] { folderRecovered(); })) {}

Fetcher::~Fetcher() {
  if (m_operation) m_operation->cancel();
}

void Fetcher::refresh() {
  if (!m_editing.hasUnsavedChanges()) fetchJobs();
}

void Fetcher::fetchJobs() {
  beginScan();
  m_isLooking = true;
  m_extraFolders.check(m_delay.whileOwned([this, number = m_scans] {
    if (number == m_scans) startOperation();
  }));
}

void Fetcher::beginScan() {
  m_scanning = m_busy.begin();
  scanningChanged();
  if (m_operation) m_operation->cancel();
  ++m_scans;
}

/// Scans without looking at the folders again: otherwise two slow folders could leave each other out forever.
void Fetcher::folderRecovered() {
  if (m_isLooking || m_editing.hasUnsavedChanges()) return;
  beginScan();
  startOperation();
}

void Fetcher::startOperation() {
  m_isLooking = false;
  ScanSettings settings = m_foundation.scanSettings();
  settings.folders = m_extraFolders.answered();  // a scan would wait for others, maybe forever
  const auto operation = std::make_shared<FetchOperation>(m_catalogue.jobs(), std::move(settings), m_tools->scan);
  m_operation = operation;

  auto publication = m_delay.whileOwned([this, operation] { publish(*operation); });
  m_platform.fetchQueue.add(
      [operation, tools = m_tools, &queue = m_platform.mainQueue, publication = std::move(publication)] {
        operation->main();
        // If this scan was cancelled by a new one, that one ends the loading state.
        if (!operation->isCancelled()) queue.post(publication);
      });
}

void Fetcher::scanningChanged() {
  m_notifications.loadingChanged.post();
  if (m_shell.edit) m_shell.edit->updateButtons();
}

void Fetcher::publish(FetchOperation& operation) {
  if (operation.isCancelled()) return;
  m_scanning.release();
  m_hasScanned = true;
  scanningChanged();
  if (m_catalogue.jobs().empty()) {
    m_delay(0, [this] {
      if (m_shell.mainWindow) m_shell.mainWindow->validateVisibleItems();
    });
  }
  // Publishing would replace the edited job, and lose edits that began during the scan; and while a save runs, the scan
  // may have seen an intermediate state. Another scan follows when the changes have been saved or discarded.
  if (!operation.jobs || m_editing.hasUnsavedChanges() || m_saving.isBusy()) return;
  replaceJobs(*std::move(operation.jobs));
}

void Fetcher::replaceJobs(Jobs jobs) {
  m_currentMode.update(jobs);
  auto old = std::make_shared<Jobs>(m_catalogue.publish(std::move(jobs)));
  followMovedSelection(*old);
  reconcileSelection();
  matchIcons();
  m_notifications.jobsUpdated.post();
  // Destroying ten thousand jobs would block the main thread noticeably.
  m_platform.fetchQueue.add([old = std::move(old)]() mutable { old.reset(); });
}

void Fetcher::followMovedSelection(const Jobs& old) {
  const auto selected = m_selection.job();
  const auto moved = selected ? findMoved(*selected, old, m_catalogue.jobs()) : nullptr;
  if (moved) selected->url = moved->url;
}

void Fetcher::reconcileSelection() {
  if (!m_selection.job()) return;
  const URL url = m_selection.job()->url;
  if (const auto job = m_catalogue.jobAt(url)) {
    if (ModeType* const mode = m_currentMode.view()) mode->select(url);
    // The mode doesn't select the job if the filter hides it.
    if (!m_editing.hasUnsavedChanges()) m_selection.replace(job);
    return;
  }
  if (m_shell.detail) m_shell.detail->clearDetail();
  m_selection.select(nullptr);
}

void Fetcher::matchIcons() {
  const auto before = m_selection.job() ? m_selection.job()->customIcon : std::nullopt;
  matchCustomIcons(m_catalogue.jobs(), m_foundation.roots.applicationSupport, m_platform.workspace);
  const auto selected = m_selection.job();
  if (!selected || selected->customIcon == before) return;
  if (m_shell.detail) m_shell.detail->updateIcon();
  if (ModeType* const mode = m_currentMode.view()) mode->reloadJob(selected);
}

std::shared_ptr<Job> findMoved(const Job& job, const Jobs& oldJobs, const Jobs& newJobs) {
  if (job.name.empty() || !job.kind.isLaunchd() || job.isNewFile) return nullptr;
  std::error_code failure;
  const auto type = std::filesystem::symlink_status(job.url.path(), failure).type();
  if (type != std::filesystem::file_type::not_found) return nullptr;
  std::shared_ptr<Job> found;
  for (const auto& candidate : newJobs) {
    if (!candidate->kind.canBeLoaded() || candidate->name != job.name) continue;
    if (found) return nullptr;
    found = candidate;
  }
  const auto isThere = [&found](const auto& old) { return old->url.equalTo(found->url); };
  return found && std::none_of(oldJobs.begin(), oldJobs.end(), isThere) ? found : nullptr;
}

}  // namespace mirvel
