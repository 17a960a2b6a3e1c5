#include "core/app/Program.h"

#include <unistd.h>

#include "core/runs/LaunchctlReports.h"
#include "core/runs/ReportFolders.h"

namespace mirvel {

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
      extraFolders(foundation.defaults, platform.checkQueue, platform.mainQueue),
      fetcher(foundation, platform, extraFolders, catalogue, selection, currentMode, editing, notifications, shell,
              scanning, saving),
      session{foundation, platform, shell, catalogue, selection, currentMode, editing, fetcher, notifications},
      drafts(session),
      problems(session, lint::TargetMachine::thisMachine(foundation.roots.home.string())),
      icons(foundation.roots.applicationSupport, platform.interface, platform.workspace, foundation.localize, selection,
            shell, [this](const auto& job) { iconChanged(job); }),
      actions({session, revisions, repairs, saving, deleting}),
      deletion(actions, deletedJobs, editing, saving, foundation, platform, shell),
      hostStart(platform, foundation.localize, catalogue, notifications),
      runs(catalogue),
      moments(foundation.localize),
      control(session, saving, actions, runs),
      failedOutput(actions, platform.clock, platform.mainQueue),
      runDisplay(session, runs, moments),
      documents(foundation, platform),
      creationContext{session, actions, repairs, deletedJobs, scheduledController, kinds, creation, saving},
      mainWindow(session, drafts),
      windowContext{session,    revisions, deletion, hostStart, problems, kinds,
                    mainWindow, runs,      control,  moments,   saving,   scanning},
      menus(windowContext),
      settingEffects(session, mainWindow),
      uninstaller(session, actions, hostStart, runs, saving, deleting),
      preferencesContext{session, {&revisions.store(), &documents.revisions()}, extraFolders, uninstaller},
      appDelegate(session, extraFolders, actions, drafts, mainWindow, runs),
      termination(platform.mainQueue, shell, editing, drafts, documents, actions, mainWindow, saving, deleting),
      jobURLOpener(session, mainWindow, control),
      m_reverted(editing.reverted().subscribe([this] { fetcher.refresh(); })),
      m_runsChanged(runs.changed().subscribe([this](const Jobs&) { hostStart.setHost(runs.host(RunDomain::User)); })) {
  runs.add(std::make_unique<ReportFolders>(foundation.roots, platform));
  // launchd publishes no reports.
  const std::string& launchctl = foundation.commands.launchctl;
  if (isProgram(launchctl)) runs.add(std::make_unique<LaunchctlReports>(launchctl, ::getuid(), platform));
}

void Program::iconChanged(const std::shared_ptr<Job>& job) {
  if (job->customIcon) notifications.iconGiven.post(*job);
  if (ModeType* const mode = currentMode.view()) mode->reloadJob(job);
}

}  // namespace mirvel
