#include "core/mainwindow/MenuController.h"

#include "core/actions/JobDeletion.h"
#include "core/actions/RevisionController.h"
#include "core/mainwindow/ModeRules.h"
#include "core/mainwindow/WindowContext.h"
#include "core/session/Busy.h"
#include "core/session/CurrentMode.h"
#include "core/session/Editing.h"
#include "core/session/Foundation.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

bool MenuController::isOffered(Command command) const {
  return mirvel::isOffered(command, m_context.shell);
}

CommandContext MenuController::context() const {
  const Shell& shell = m_context.shell;
  const Defaults& defaults = m_context.foundation.defaults;
  CommandContext result{.hasUnsavedChanges = m_context.editing.hasUnsavedChanges(),
                        .isSaving = m_context.saving.isBusy(),
                        .isScriptInFront = static_cast<bool>(shell.saveScript),
                        .editsSystemJobs = defaults.editSystemJobs(),
                        .showsSystemJobs = defaults.showSystemJobs(),
                        .subset = m_context.currentMode.subset(),
                        .checksJobs = defaults.checkJobs(),
                        .showsTitleBar = defaults.showTitleBar(),
                        .mode = m_context.currentMode.chosen()};
  const auto job = shownJob(m_context.selection, m_context.shell);
  if (job) {
    result.selected = job->kind;
    result.isSelectedNamed = !job->name.empty();
    result.canDeleteSelected = m_context.deletion.canDelete(*job);
    result.hasRevisions = m_context.revisions.revisions().find(storeKey(job->url)) != nullptr;
  }
  for (const RunOrder order : allRunOrders) {
    if (!job || !JobControl::isOffered(order, *job)) continue;
    result.offersOrder.at(static_cast<std::size_t>(order)) = true;
    result.orderObstacles.at(static_cast<std::size_t>(order)) = m_context.control.obstacle(order, *job);
  }
  if (shell.detail) result.detailTab = shell.detail->detailTab();
  if (shell.mainWindow) {
    result.hasSheet = shell.mainWindow->hasSheet();
    result.hasFilterField = shell.mainWindow->hasFilterField();
    result.isFullScreen = shell.mainWindow->isFullScreen();
  }
  return result;
}

void MenuController::perform(Command command) {
  if (isOffered(command) && isEnabled(command)) mirvel::perform(command, m_context);
}

}  // namespace mirvel
