#include "core/mainwindow/JobMenu.h"

#include "core/actions/JobDeletion.h"
#include "core/mainwindow/MainWindowController.h"
#include "core/mainwindow/WindowContext.h"
#include "core/mainwindow/WindowTexts.h"
#include "core/session/CurrentMode.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"

namespace mirvel {

namespace {

enum class Deletion { LeftOut, Offered };

void fill(const WindowContext& context, JobMenu& menu, const std::shared_ptr<Job>& job, Deletion deletion) {
  const Localize& localize = context.foundation.localize;
  menu.addTitle(job->name);
  menu.addSeparator();
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
