#include "core/mainwindow/JobMenu.h"

#include "core/actions/JobDeletion.h"
#include "core/mainwindow/MainWindowController.h"
#include "core/mainwindow/WindowContext.h"
#include "core/mainwindow/WindowTexts.h"
#include "core/runs/JobControl.h"
#include "core/runs/RunStateTexts.h"
#include "core/session/CurrentMode.h"
#include "core/session/Editing.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

namespace {

enum class Deletion { LeftOut, Offered };

std::string titleOf(RunOrder order, const RunStateTexts& texts) {
  switch (order) {
    case RunOrder::RunNow:
      return texts.runNow();
    case RunOrder::Stop:
      return texts.stop();
    case RunOrder::Restart:
      return texts.restart();
    case RunOrder::Disable:
      return texts.disable();
  }
  return {};
}

/// The log is that of the selected job, which another one becomes first.
bool canShowLog(const WindowContext& context, const std::shared_ptr<Job>& job) {
  const bool isSelected = job == context.selection.job();
  return context.shell.sheets.contains(Sheet::Log) && (isSelected || !context.editing.hasUnsavedChanges());
}

void showLog(const WindowContext& context, const std::shared_ptr<Job>& job) {
  if (!canShowLog(context, job)) return;
  if (ModeType* const mode = context.currentMode.view(); mode && job != context.selection.job()) mode->select(job->url);
  const auto selected = context.selection.job();
  if (!selected || !selected->url.equalTo(job->url)) return;  // the job was removed while the menu was open
  context.shell.sheets.at(Sheet::Log)();
}

void addRuns(const WindowContext& context, JobMenu& menu, const std::shared_ptr<Job>& job) {
  const RunStateTexts texts(context.foundation.localize);
  for (const RunOrder order : allRunOrders) {
    if (!JobControl::isOffered(order, *job)) continue;
    menu.add(
        titleOf(order, texts), [&context, order, job] { context.control.give(order, job); },
        context.control.obstacle(order, *job));
  }
  if (canShowLog(context, job)) menu.add(texts.showLog(), [&context, job] { showLog(context, job); });
  menu.addSeparator();
}

void fill(const WindowContext& context, JobMenu& menu, const std::shared_ptr<Job>& job, Deletion deletion) {
  const Localize& localize = context.foundation.localize;
  menu.addTitle(job->name);
  menu.addSeparator();
  if (job->kind.canBeLoaded()) addRuns(context, menu, job);
  menu.add(localize.revealInFinder(), [&context, job] { context.mainWindow.revealInFinder(*job); });
  if (deletion == Deletion::Offered && context.deletion.canDelete(*job)) {
    menu.add(localize.delete_(), [&context, job] { context.deletion.confirm(job); });
  }
  if (job->kind == Kind::loginItemApplication) {
    menu.add(WindowTexts(localize).open(), [&context, job] { context.platform.workspace.open(job->url); });
  }
}

}  // namespace

void jobContextMenu(const WindowContext& context, JobMenu& menu, const std::shared_ptr<Job>& job) {
  fill(context, menu, job, Deletion::Offered);
}

void jobContextMenuWithoutDelete(const WindowContext& context, JobMenu& menu, const std::shared_ptr<Job>& job) {
  fill(context, menu, job, Deletion::LeftOut);
}

JobMenu menuForJob(const WindowContext& context, const std::shared_ptr<Job>& job) {
  JobMenu menu;
  if (!job || job->isNewFile) return menu;
  if (ModeType* mode = context.currentMode.view()) mode->contextMenu(menu, job);
  return menu;
}

}  // namespace mirvel
