#include "core/commands/TextAsEdited.h"

#include <utility>

#include "core/jobfile/Plist.h"
#include "core/jobfile/RunString.h"
#include "core/propertylist/Writer.h"

namespace mirvel {

void takeArgumentsFromRun(jobfile::Plist& record) {
  auto read = record.asRead();
  jobfile::Command command;
  if (read) command = {std::move(read->program), std::move(read->programArguments)};
  if (!read || read->run != record.run) command = jobfile::commandOf(record.run, command);
  record.program = std::move(command.program);
  record.programArguments = std::move(command.arguments);
}

std::string textAsEdited(const jobfile::Plist& record) {
  jobfile::Plist edited = record.clone();
  takeArgumentsFromRun(edited);
  const auto text = propertylist::writeXml(edited.encodeAll());
  return text ? *text : std::string();
}

}  // namespace mirvel
