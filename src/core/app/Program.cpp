#include "core/app/Program.h"

#include <algorithm>

#include "core/actions/CommentedFile.h"
#include "core/creation/SaveNewJob.h"

namespace mirvel {

Program::Program(Foundation& theFoundation, const Platform& thePlatform)
    : foundation(theFoundation),
      platform(thePlatform),
      storeTeller(foundation.storeTroubles, platform.interface, platform.console, platform.mainQueue,
                  foundation.localize),
      kinds(foundation.localize, foundation.defaults, platform.workspace),
      mainWindow(*this),
      fetcher(*this),
      appDelegate(*this),
      repairs(foundation.defaults, foundation.commands, platform.interface, platform.processRunner, foundation.localize,
              foundation.roots.home),
      revisions(foundation.roots.applicationSupport, foundation.defaults, platform.clock, foundation.storeTroubles),
      deletedJobs(foundation.roots.applicationSupport, platform.clock, foundation.storeTroubles),
      notes(foundation.roots.applicationSupport, platform.mainQueue, foundation.storeTroubles),
      jobMoves(foundation.roots.applicationSupport, selection, notes, revisions, foundation.storeTroubles),
      editing(selection, shell, state.saving, foundation, platform.clock, platform.console),
      drafts(foundation, platform, shell, selection, catalogue, fetcher, notifications, editing,
             {.select = [this](const auto& job) { selectNewJob(*this, job); },
              .keepFile = [this](const auto& name, const auto& text) { return keepFile(*this, name, text); },
              .keptFiles = keptFilesFolder(*this)}),
      icons(foundation.roots.applicationSupport, platform.interface, platform.workspace, foundation.localize, selection,
            shell, [this](const auto& job) { iconChanged(job); }),
      scheduledController(foundation.localize),
      actions(*this),
      hostStart(*this),
      menus(*this),
      m_reverted(editing.reverted().subscribe([this] { mainWindow.refresh(); })) {}

void Program::iconChanged(const std::shared_ptr<Job>& job) {
  if (job->customIcon) jobMoves.remember(*job);
  if (ModeType* const mode = currentMode()) mode->reloadJob(job);
}

ModeType* Program::currentMode() const {
  if (ModeType* const chosen = shell.modes.at(static_cast<std::size_t>(mainWindow.mode()))) return chosen;
  const auto* first = std::find_if(shell.modes.begin(), shell.modes.end(), [](const ModeType* mode) { return mode; });
  return first == shell.modes.end() ? nullptr : *first;
}

}  // namespace mirvel
