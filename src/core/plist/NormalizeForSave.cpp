#include "core/creation/CommandRepairs.h"
#include "core/plist/Plist.h"
#include "core/support/Text.h"

namespace mirvel::launchd {

void Plist::normalizeForSave(CommandRepairs& repairs) {
  program.reset();
  fillEmptyLabel();
  run = repairs.expandTilde(repairs.repairCommand(run));
  (void)repairs.stripSudo(run);  // a saved command keeps its sudo
  run = repairs.checkComplexCommand(run, name);

  auto arguments = Text::separateCommand(run);
  if (arguments == std::vector<std::string>{""}) {
    programArguments.reset();
  } else {
    programArguments = std::move(arguments);
  }
}

}  // namespace mirvel::launchd
