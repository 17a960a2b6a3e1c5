#include "core/mainwindow/ModeRules.h"

#include "core/app/Program.h"

namespace mirvel {

bool SelectionGuard::mayChange() {
  if (m_program.state.saving.isBusy()) return false;
  if (!m_program.editing.hasUnsavedChanges()) {
    m_isWarningAboutUnsaved = false;
    return true;
  }
  if (!m_isWarningAboutUnsaved) {
    m_program.mainWindow.unsavedChangesAlert();
    m_isWarningAboutUnsaved = true;
  }
  return false;
}

std::optional<std::string> emptyStateLabel(const Program& program) {
  if (program.state.scanning.isBusy()) return program.foundation.localize.ellipsis().loading();
  if (program.catalogue.jobs().empty()) return program.foundation.localize.noItems();
  return std::nullopt;
}

std::optional<URL> draggedURL(const Job& job) {
  return job.kind.isLaunchd() ? std::optional(job.url) : std::nullopt;
}

}  // namespace mirvel
