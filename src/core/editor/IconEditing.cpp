#include "core/editor/IconEditing.h"

#include <filesystem>
#include <system_error>

#include "core/app/Program.h"
#include "core/catalogue/CustomIcons.h"
#include "core/files/ReplaceFile.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

void showIcon(Program& program, const std::shared_ptr<Job>& job) {
  const Shell& shell = program.shell;
  if (shell.emptyIconCache) shell.emptyIconCache();  // the picture has the name of the one before
  if (shell.detail && job == program.selection.job()) shell.detail->updateIcon();
  if (ModeType* const mode = program.currentMode.view()) mode->reloadJob(job);
}

void tell(Program& program, const Error& failure) {
  program.platform.interface.error(program.foundation.localize.theIconCouldntBeSaved(), failure.text());
}

}  // namespace

void setCustomIcon(Program& program, const std::shared_ptr<Job>& job, const std::string& png) {
  const auto name = job->iconStoreName();
  if (!name) return;
  const fs::path file = customIconFile(program.foundation.roots.applicationSupport, *name);
  if (const auto made = makePrivateFolder(file.parent_path()); !made) return tell(program, made.error());
  if (const auto written = replaceFile(file, png); !written) return tell(program, written.error());
  job->customIconDigest = name;
  job->customIcon = program.platform.workspace.image(file);
  program.notifications.iconGiven.post(*job);
  showIcon(program, job);
}

void removeCustomIcon(Program& program, const std::shared_ptr<Job>& job) {
  const auto name = job->iconStoreName();
  if (!name) return;
  const fs::path file = customIconFile(program.foundation.roots.applicationSupport, *name);
  std::error_code failure;
  fs::remove(file, failure);
  if (failure) return tell(program, systemError(failure.value(), "remove the picture", file.string()));
  job->customIcon.reset();
  showIcon(program, job);
}

}  // namespace mirvel
