#include "core/creation/ExportJob.h"

#include "core/actions/JobOnDisk.h"
#include "core/actions/MoveTarget.h"
#include "core/catalogue/Launchd.h"
#include "core/files/ReplaceFile.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"

namespace mirvel {

void exportJob(const Selection& selection, const Roots& roots, Interface& interface) {
  const auto job = selection.launchd();
  if (!job) return;
  const std::string text = job->plistData().value_or("");
  const auto file = interface.savePanel({.folder = roots.home, .name = jobFileName(job->name), .allowedType = "plist"});
  if (!file) return;
  const auto mode = static_cast<mode_t>(restrictedMode(job->url).value_or(0777));
  if (const auto written = replaceFile(*file, text, mode); !written) interface.present(written.error());
}

}  // namespace mirvel
