#include "core/actions/NormalizeForSave.h"

#include <utility>

#include "core/commands/CommandRepairs.h"
#include "core/jobfile/Plist.h"
#include "core/jobfile/RunString.h"

namespace mirvel {

bool normalizeForSave(jobfile::Plist& record, CommandRepairs& repairs) {
  jobfile::Plist saved = record.clone();
  saved.fillEmptyLabel();  // of the command as it was typed
  const auto read = record.asRead();
  if (!read || read->run != record.run) {
    const std::string repaired = repairs.expandTilde(repairs.repairCommand(record.run));
    (void)repairs.stripSudo(repaired);  // a saved command keeps its sudo
    auto command = repairs.checkComplexCommand(repaired, saved.name);
    if (!command) return false;
    saved.run = *std::move(command);
  }
  takeArgumentsFromRun(saved);
  record = std::move(saved);
  return true;
}

}  // namespace mirvel
