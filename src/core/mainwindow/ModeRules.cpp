#include "core/mainwindow/ModeRules.h"

#include "core/mainwindow/MainWindowController.h"
#include "core/mainwindow/WindowContext.h"
#include "core/runs/JobRuns.h"
#include "core/runs/RunDetails.h"
#include "core/runs/RunStateTexts.h"
#include "core/session/Busy.h"
#include "core/session/Catalogue.h"
#include "core/session/Editing.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

bool SelectionGuard::mayChange() {
  if (m_context.saving.isBusy()) return false;
  if (!m_context.editing.hasUnsavedChanges()) {
    m_isWarningAboutUnsaved = false;
    return true;
  }
  // Each arrow key would ask again.
  if (!m_isWarningAboutUnsaved) {
    m_context.mainWindow.unsavedChangesAlert();
    m_isWarningAboutUnsaved = true;
  }
  return false;
}

std::optional<std::string> emptyStateLabel(const WindowContext& context) {
  if (context.scanning.isBusy()) return context.foundation.localize.ellipsis().loading();
  if (context.catalogue.jobs().empty()) return context.foundation.localize.noItems();
  return std::nullopt;
}

std::optional<Image> failureMark(const WindowContext& context, const Job& job) {
  if (context.runs.state(job) != JobState::Failed) return std::nullopt;
  auto image = stateImage(JobState::Failed, context.foundation.localize);
  image->accessibilityDescription = RunStateTexts(context.foundation.localize).lastRunFailed();
  return image;
}

std::string runsToolTip(const WindowContext& context, const Job& job) {
  const double now = context.platform.clock.secondsSince1970();
  std::string text;
  for (const auto& line : runDetails(job, context.runs, context.moments, now, context.foundation.localize).lines) {
    text += (text.empty() ? "" : "\n") + line;
  }
  return text;
}

std::optional<URL> draggedURL(const Job& job) {
  return job.kind.isLaunchd() ? std::optional(job.url) : std::nullopt;
}

bool selectInCatalogue(const WindowContext& context, const URL& url) {
  if (context.editing.hasUnsavedChanges()) return false;
  const auto job = context.catalogue.jobAt(url);
  if (!job) return false;
  context.selection.select(job);
  return true;
}

std::shared_ptr<Job> shownJob(const Selection& selection, const Shell& shell) {
  const DetailType* const detail = shell.detail;
  const bool isShown = !detail || detail->detailTab() != DetailTab::NoSelection;
  return isShown ? selection.job() : nullptr;
}

}  // namespace mirvel
