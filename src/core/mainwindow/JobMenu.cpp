#include "core/mainwindow/JobMenu.h"

#include "core/app/Program.h"

namespace mirvel {

void jobContextMenu(Program& program, JobMenu& menu, const std::shared_ptr<Job>& job) {
  const Localize& localize = program.foundation.localize;
  menu.addTitle(job->name);
  menu.addSeparator();
  menu.add(localize.revealInFinder(), [&program, job] { program.mainWindow.revealInFinder(*job); });
  if (program.mainWindow.canDeleteJob(*job)) {
    menu.add(localize.delete_(), [&program, job] { program.mainWindow.confirmDelete(job); });
  }
  if (job->kind == Kind::loginItemApplication) {
    menu.add(localize.open(), [&program, job] { program.platform.workspace.open(job->url); });
  }
}

}  // namespace mirvel
