#include "core/mainwindow/ModeJob.h"

#include <algorithm>

#include "core/app/Program.h"

namespace mirvel {

bool selectInCatalogue(Program& program, const URL& url) {
  if (program.editing.hasUnsavedChanges()) return false;
  const auto job = program.catalogue.jobAt(url);
  if (!job) return false;
  program.selection.select(job);
  program.mainWindow.selectedJobDidChange();
  return true;
}

std::shared_ptr<Job> shownJob(const Program& program) {
  const DetailType* const detail = program.shell.detail;
  const bool isShown = !detail || detail->detailTab() != DetailTab::noSelection;
  return isShown ? program.selection.job() : nullptr;
}

JobMenu menuForJob(Program& program, const std::shared_ptr<Job>& job) {
  JobMenu menu;
  if (!job || job->isNewFile) return menu;
  if (ModeType* mode = program.currentMode()) mode->contextMenu(menu, job);
  return menu;
}

bool haveSameRows(const Jobs& a, const Jobs& b) {
  return areEqual(a, b);
}

}  // namespace mirvel
