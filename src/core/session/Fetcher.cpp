#include "core/session/Fetcher.h"

#include "core/app/Program.h"
#include "core/catalogue/CustomIcons.h"
#include "core/session/ModeFilter.h"

namespace mirvel {

/// Shared with the scans, which may outlive the program's end by a moment.
struct Fetcher::Tools {
  Tools(Program& program)
      : embeddedList(program.platform.processRunner, program.foundation.commands.launchctl),
        scan{.collator = program.foundation.collator,
             .loginItems = program.platform.loginItems,
             .embeddedList = embeddedList,
             .console = program.platform.console} {}

  EmbeddedList embeddedList;
  ScanTools scan;
};

Fetcher::Fetcher(Program& program)
    : m_program(program), m_tools(std::make_shared<Tools>(program)), m_delay(program.platform.mainQueue) {}

Fetcher::~Fetcher() {
  if (m_operation) m_operation->cancel();
}

void Fetcher::fetchJobs() {
  m_scanning = m_program.state.scanning.begin();
  scanningChanged();
  if (m_operation) m_operation->cancel();
  const auto operation =
      std::make_shared<FetchOperation>(m_program.catalogue.jobs(), m_program.foundation.scanSettings(), m_tools->scan);
  m_operation = operation;

  auto publication = m_delay.whileOwned([this, operation] { publish(*operation); });
  m_program.platform.fetchQueue.add(
      [operation, tools = m_tools, &queue = m_program.platform.mainQueue, publication = std::move(publication)] {
        operation->main();
        // The scan that cancelled this one will end the loading.
        if (!operation->isCancelled()) queue.post(publication);
      });
}

void Fetcher::scanningChanged() {
  m_program.notifications.loadingChanged.post();
  if (m_program.shell.edit) m_program.shell.edit->updateButtons();
}

void Fetcher::publish(FetchOperation& operation) {
  if (operation.isCancelled()) return;
  m_scanning.release();
  m_hasScanned = true;
  scanningChanged();
  if (m_program.catalogue.jobs().empty()) {
    m_delay(0, [this] {
      if (m_program.shell.mainWindow) m_program.shell.mainWindow->validateVisibleItems();
    });
  }
  // Edits that began during the scan would be lost with their job, and a save is only half done; a scan follows when
  // they are saved or dropped.
  if (!operation.jobs || m_program.editing.hasUnsavedChanges() || m_program.state.saving.isBusy()) return;
  replaceJobs(*std::move(operation.jobs));
}

void Fetcher::replaceJobs(Jobs jobs) {
  if (ModeType* mode = m_program.currentMode()) {
    if (m_program.state.filterString.empty()) {
      mode->update(jobs);
    } else {
      modeFilter(m_program, *mode, jobs, m_program.state.filterString);
    }
  }
  m_program.jobMoves.follow(m_program.catalogue.jobs(), jobs);
  if (const auto selected = m_program.selection.job()) {
    if (const auto moved = findMoved(*selected, m_program.catalogue.jobs(), jobs)) selected->url = moved->url;
  }
  m_program.catalogue.publish(std::move(jobs));
  jobsDidUpdate();
  // To take ten thousand old jobs apart takes a while, and is nothing that the main thread must wait for.
  m_program.platform.fetchQueue.add([old = std::make_shared<Jobs>(std::move(jobs))]() mutable { old.reset(); });
}

void Fetcher::jobsDidUpdate() {
  reconcileSelection();
  matchIcons();
  m_program.jobMoves.remember(m_program.catalogue.jobs());
  m_program.notifications.jobsUpdated.post();
}

void Fetcher::reconcileSelection() {
  if (!m_program.selection.job()) return;
  const URL url = m_program.selection.job()->url;
  if (const auto job = m_program.catalogue.jobAt(url)) {
    if (ModeType* mode = m_program.currentMode()) mode->select(url);
    // A filter may hide the job from the mode; it is selected all the same, as it now is.
    if (!m_program.editing.hasUnsavedChanges()) m_program.selection.select(job);
    return;
  }
  if (m_program.shell.detail) m_program.shell.detail->clearDetail();
  m_program.selection.select(nullptr);
  m_program.mainWindow.selectedJobDidChange();
}

void Fetcher::matchIcons() {
  const auto before = m_program.selection.job() ? m_program.selection.job()->customIcon : std::nullopt;
  matchCustomIcons(m_program.catalogue.jobs(), m_program.foundation.roots.applicationSupport,
                   m_program.platform.workspace);
  if (!m_program.selection.job() || m_program.selection.job()->customIcon == before) return;
  if (m_program.shell.detail) m_program.shell.detail->updateIcon();
  if (ModeType* mode = m_program.currentMode()) mode->reloadJob(m_program.selection.job());
}

}  // namespace mirvel
