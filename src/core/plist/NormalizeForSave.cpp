#include "core/plist/NormalizeForSave.h"
#include "core/creation/CommandRepairs.h"
#include "core/plist/Plist.h"
#include "core/support/Text.h"

namespace mirvel::launchd {

void Plist::normalizeForSave(CommandRepairs& repairs) {
  fillEmptyLabel();
  run = repairs.expandTilde(repairs.repairCommand(run));
  (void)repairs.stripSudo(run);  // a saved command keeps its sudo
  run = repairs.checkComplexCommand(run, name);

  takeArgumentsFromRun(*this);
}

void takeArgumentsFromRun(Plist& record) {
  record.program.reset();
  auto arguments = Text::separateCommand(record.run);
  if (arguments == std::vector<std::string>{""}) {
    record.programArguments.reset();
  } else {
    record.programArguments = std::move(arguments);
  }
}

}  // namespace mirvel::launchd
