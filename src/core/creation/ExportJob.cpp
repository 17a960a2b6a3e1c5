#include "core/creation/ExportJob.h"

#include "core/actions/JobOnDisk.h"
#include "core/actions/MoveTarget.h"
#include "core/app/Program.h"
#include "core/catalogue/Launchd.h"
#include "core/files/ReplaceFile.h"

namespace mirvel {

void exportJob(Program& program) {
  const auto job = program.selection.launchd();
  if (!job) return;
  const std::string text = job->plistData().value_or("");
  Interface& interface = program.platform.interface;
  const auto file = interface.savePanel(
      {.folder = program.foundation.roots.home, .name = jobFileName(job->name), .allowedType = "plist"});
  if (!file) return;
  const auto mode = static_cast<mode_t>(restrictedMode(job->url).value_or(0777));
  if (const auto written = replaceFile(*file, text, mode); !written) interface.present(written.error());
}

}  // namespace mirvel
