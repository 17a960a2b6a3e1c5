#include "core/creation/SaveNewJob.h"

#include "core/app/Program.h"
#include "core/catalogue/Launchd.h"
#include "core/propertylist/Writer.h"

namespace mirvel {

std::shared_ptr<Launchd> makeNewJob(Program& program, const propertylist::Dictionary& content, const URL& url,
                                    Kind kind) {
  const auto data = propertylist::writeXml(content);
  if (!data) return nullptr;
  return Launchd::read(*data, url, kind, program.foundation.scanSettings(), program.platform.console);
}

void saveNewJob(Program& program, const std::shared_ptr<Launchd>& job,
                const std::function<void(bool isWritten)>& ended) {
  job->isNewFile = true;
  const auto isLost = std::make_shared<bool>(false);
  program.actions.save(job, [isLost, ended](bool isWritten) {
    *isLost = !isWritten;
    if (ended) ended(isWritten);
  });
  if (!*isLost) selectNewJob(program, job);
}

void selectNewJob(Program& program, const std::shared_ptr<Job>& job) {
  ModeType* const mode = program.currentMode();
  if (mode) mode->deselect();
  program.selection.select(job);
  program.mainWindow.selectedJobDidChange();
  if (mode) mode->select(job);
}

}  // namespace mirvel
