#include "core/plist/RunString.h"

#include "core/plist/EscapedBlanks.h"
#include "core/support/Strings.h"

namespace mirvel::launchd {

namespace {

bool needsQuotes(const std::string& argument) {
  if (argument.starts_with('"') || argument.starts_with('\'')) return false;
  // Most arguments have no blank at all, and no copy is made of them.
  return argument.find(' ') != std::string::npos && replaceEscapedBlanks(argument, "").find(' ') != std::string::npos;
}

void appendArgument(std::string& text, const std::string& argument) {
  if (!needsQuotes(argument)) {
    text += argument;
    return;
  }
  const char quote = argument.find('"') == std::string::npos ? '"' : '\'';
  text.append(1, quote).append(argument).append(1, quote);
}

/// With a blank and quotes for each.
std::size_t lengthOf(const std::vector<std::string>& arguments) {
  std::size_t length = 0;
  for (const auto& argument : arguments) length += argument.size() + 3;
  return length;
}

}  // namespace

RunString makeRunString(const std::optional<std::string>& program,
                        const std::optional<std::vector<std::string>>& programArguments) {
  RunString result{.run = program.value_or(""), .iconPath = {}};
  if (!programArguments || programArguments->empty()) return result;

  const std::string& first = programArguments->front();
  const bool repeatsProgram = first == result.run || first == String::lastPathComponent(result.run);
  result.iconPath = result.run.empty() ? first : result.run;
  result.run.reserve(lengthOf(*programArguments) + result.run.size());
  for (std::size_t i = repeatsProgram ? 1 : 0; i < programArguments->size(); ++i) {
    if (!result.run.empty()) result.run += ' ';
    appendArgument(result.run, (*programArguments)[i]);
  }
  return result;
}

}  // namespace mirvel::launchd
