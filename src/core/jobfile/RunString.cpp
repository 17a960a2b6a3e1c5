#include "core/jobfile/RunString.h"

#include <utility>

#include "core/jobfile/Plist.h"
#include "core/propertylist/Writer.h"
#include "core/text/Bytes.h"
#include "core/text/Strings.h"
#include "core/text/Text.h"

namespace mirvel::jobfile {

namespace {

using Words = std::vector<std::string>;

/// Whether the first argument is the path or name of the program, and can be left out.
bool repeatsProgram(const std::string& program, const Words& arguments) {
  return arguments.front() == program || arguments.front() == String::lastPathComponent(program);
}

/// The length of the command line, estimated with a blank and quotes for each argument.
std::size_t lengthOf(const Words& arguments) {
  std::size_t length = 0;
  for (const auto& argument : arguments) length += argument.size() + 3;
  return length;
}

bool hasProgram(const CommandKeys& command) {
  return command.program && !command.program->empty();
}

bool hasArguments(const CommandKeys& command) {
  return command.arguments && !command.arguments->empty();
}

/// The arguments after the program; none if there are none, since launchd then passes the program as the first one.
std::optional<Words> argumentsAfterProgram(Words words) {
  words.erase(words.begin());
  return words.empty() ? std::nullopt : std::optional(std::move(words));
}

std::string replaceEscapedBlanks(std::string_view text, std::string_view replacement) {
  constexpr std::string_view escaped = "\\ ";
  std::string result;
  while (true) {
    const std::size_t at = text.find(escaped);
    result += text.substr(0, at);
    if (at == std::string_view::npos) return result;
    result += replacement;
    text.remove_prefix(at + escaped.size());
  }
}

/// A label for a command line: the name of its last path without extension and quotes. Empty for very short commands.
std::string labelOf(std::string_view run) {
  constexpr std::size_t shortestCommand = 4;
  constexpr std::size_t longestLabel = 48;
  if (String::characterCount(run) < shortestCommand) return {};
  std::string label = replaceEscapedBlanks(String::withoutExtension(String::lastPathComponent(run)), " ");
  std::erase_if(label, [](char c) { return c == '"' || c == '\'' || c == '\\'; });
  if (String::characterCount(label) <= longestLabel) return label;
  return std::string(String::trim(String::firstCharacters(label, longestLabel)));
}

}  // namespace

RunString makeRunString(const std::optional<std::string>& program, const std::optional<Words>& programArguments) {
  RunString result{.run = {}, .iconPath = {}};
  const bool isNamed = program && !program->empty();
  if (isNamed) Text::appendArgument(result.run, *program);
  if (!programArguments || programArguments->empty()) return result;

  result.iconPath = isNamed ? *program : programArguments->front();
  result.run.reserve(lengthOf(*programArguments) + result.run.size());
  const std::size_t first = isNamed && repeatsProgram(*program, *programArguments) ? 1 : 0;
  for (std::size_t i = first; i < programArguments->size(); ++i) {
    Text::appendArgument(result.run, (*programArguments)[i]);
  }
  return result;
}

CommandKeys commandOf(const std::string& run, const CommandKeys& before) {
  Words words = Text::separateCommand(run);
  if (words == Words{""}) return {};
  const std::string program = words.front();
  if (hasProgram(before) && hasArguments(before)) {
    if (!repeatsProgram(*before.program, *before.arguments)) return {program, argumentsAfterProgram(std::move(words))};
    if (program == *before.program) {
      words.front() = before.arguments->front();
      return {program, std::move(words)};
    }
  } else if (hasProgram(before) && words.size() == 1) {
    return {program, std::nullopt};
  }
  return {std::nullopt, std::move(words)};
}

void takeArgumentsFromRun(Plist& record) {
  auto read = record.asRead();
  CommandKeys command;
  if (read) command = {std::move(read->program), std::move(read->programArguments)};
  if (!read || read->run != record.run) command = commandOf(record.run, command);
  record.program = std::move(command.program);
  record.programArguments = std::move(command.arguments);
}

propertylist::Dictionary fileAsEdited(const Plist& record) {
  Plist edited = record.clone();
  takeArgumentsFromRun(edited);
  return edited.encodeAll();
}

std::string textAsEdited(const Plist& record) {
  const auto text = propertylist::writeXml(fileAsEdited(record));
  return text ? *text : std::string();
}

void Plist::fillEmptyLabel() {
  if (!name.empty()) return;
  name = labelOf(run);
  if (name.empty()) name = makeUuid();
}

}  // namespace mirvel::jobfile
