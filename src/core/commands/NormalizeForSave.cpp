#include "core/commands/NormalizeForSave.h"

#include <utility>

#include "core/commands/CommandRepairs.h"
#include "core/jobfile/Plist.h"
#include "core/jobfile/RunString.h"
#include "core/propertylist/Writer.h"

namespace mirvel::jobfile {

bool Plist::normalizeForSave(CommandRepairs& repairs) {
  Plist saved = clone();
  saved.fillEmptyLabel();  // of the command as it was typed
  const auto read = asRead();
  if (!read || read->run != run) {
    const std::string repaired = repairs.expandTilde(repairs.repairCommand(run));
    (void)repairs.stripSudo(repaired);  // a saved command keeps its sudo
    auto command = repairs.checkComplexCommand(repaired, saved.name);
    if (!command) return false;
    saved.run = *std::move(command);
  }
  takeArgumentsFromRun(saved);
  *this = std::move(saved);
  return true;
}

void takeArgumentsFromRun(Plist& record) {
  auto read = record.asRead();
  Command command;
  if (read) command = {std::move(read->program), std::move(read->programArguments)};
  if (!read || read->run != record.run) command = commandOf(record.run, command);
  record.program = std::move(command.program);
  record.programArguments = std::move(command.arguments);
}

std::string textAsEdited(const Plist& record) {
  Plist edited = record.clone();
  takeArgumentsFromRun(edited);
  const auto text = propertylist::writeXml(edited.encodeAll());
  return text ? *text : std::string();
}

}  // namespace mirvel::jobfile
