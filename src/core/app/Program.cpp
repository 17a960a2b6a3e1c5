#include "core/app/Program.h"

#include "core/actions/CommentedFile.h"

namespace mirvel {

namespace {

ActionContext actionContext(Program& program) {
  return {.foundation = program.foundation,
          .platform = program.platform,
          .shell = program.shell,
          .catalogue = program.catalogue,
          .selection = program.selection,
          .editing = program.editing,
          .fetcher = program.fetcher,
          .revisions = program.revisions,
          .repairs = program.repairs,
          .notifications = program.notifications,
          .saving = program.saving,
          .deleting = program.deleting};
}

CreationContext makeCreationContext(Program& program) {
  return {.foundation = program.foundation,
          .platform = program.platform,
          .shell = program.shell,
          .catalogue = program.catalogue,
          .selection = program.selection,
          .currentMode = program.currentMode,
          .editing = program.editing,
          .fetcher = program.fetcher,
          .actions = program.actions,
          .repairs = program.repairs,
          .deletedJobs = program.deletedJobs,
          .scheduledController = program.scheduledController,
          .kinds = program.kinds,
          .creation = program.creation,
          .saving = program.saving};
}

WindowContext makeWindowContext(Program& program) {
  return {.foundation = program.foundation,
          .platform = program.platform,
          .shell = program.shell,
          .catalogue = program.catalogue,
          .selection = program.selection,
          .currentMode = program.currentMode,
          .editing = program.editing,
          .fetcher = program.fetcher,
          .notifications = program.notifications,
          .revisions = program.revisions,
          .deletion = program.deletion,
          .hostStart = program.hostStart,
          .kinds = program.kinds,
          .mainWindow = program.mainWindow,
          .saving = program.saving,
          .scanning = program.scanning};
}

}  // namespace

Program::Program(Foundation& theFoundation, const Platform& thePlatform)
    : foundation(theFoundation),
      platform(thePlatform),
      currentMode(shell, foundation.defaults, selection),
      storeAlerts(foundation.storeTroubles, platform.interface, platform.console, platform.mainQueue,
                  foundation.localize),
      revisions(foundation.roots.applicationSupport, foundation.defaults, platform.clock, foundation.storeTroubles),
      deletedJobs(foundation.roots.applicationSupport, platform.clock, foundation.storeTroubles),
      notes(foundation.roots.applicationSupport, platform.mainQueue, foundation.storeTroubles),
      jobMoves(foundation.roots.applicationSupport, catalogue, selection, notifications, notes, revisions,
               foundation.storeTroubles),
      kinds(foundation.localize, foundation.defaults, platform.workspace),
      repairs(foundation.defaults, foundation.commands, platform.interface, platform.processRunner, foundation.localize,
              foundation.roots.home),
      scheduledController(foundation.localize),
      editing(selection, shell, saving, foundation, platform.clock, platform.console),
      fetcher(foundation, platform, catalogue, selection, currentMode, editing, notifications, shell, scanning, saving),
      drafts(foundation, platform, shell, selection, catalogue, fetcher, notifications, editing,
             {.select = [this](const auto& job) { currentMode.select(job); },
              .keepFile = [this](const auto& name,
                                 const auto& text) { return keepFile(foundation.roots, platform.clock, name, text); },
              .keptFiles = keptFilesFolder(foundation.roots)}),
      icons(foundation.roots.applicationSupport, platform.interface, platform.workspace, foundation.localize, selection,
            shell, [this](const auto& job) { iconChanged(job); }),
      actions(actionContext(*this)),
      deletion(actions, deletedJobs, editing, saving, foundation, platform, shell),
      hostStart(platform, foundation.localize, catalogue, notifications),
      creationContext(makeCreationContext(*this)),
      mainWindow(foundation, platform, shell, catalogue, selection, currentMode, editing, fetcher, drafts),
      windowContext(makeWindowContext(*this)),
      menus(windowContext),
      appDelegate(foundation, platform, shell, catalogue, fetcher, actions, drafts, mainWindow),
      termination(platform.mainQueue, shell, editing, drafts, actions, mainWindow, saving, deleting),
      jobURLOpener(platform.mainQueue, currentMode, editing, fetcher, mainWindow, notifications),
      m_reverted(editing.reverted().subscribe([this] { fetcher.refresh(); })) {}

void Program::iconChanged(const std::shared_ptr<Job>& job) {
  if (job->customIcon) notifications.iconGiven.post(*job);
  if (ModeType* const mode = currentMode.view()) mode->reloadJob(job);
}

}  // namespace mirvel
