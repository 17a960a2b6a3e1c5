#include "core/plist/RunString.h"

#include "core/plist/EscapedBlanks.h"
#include "core/support/Strings.h"

namespace mirvel::launchd {

namespace {

/// Adds the argument, in quotes if it needs them.
void appendArgument(std::string& text, const std::string& argument) {
  const std::string unescaped = replaceEscapedBlanks(argument, "");
  const bool isQuoted = argument.starts_with('"') || argument.starts_with('\'');
  if (isQuoted || unescaped.find(' ') == std::string::npos) {
    text += argument;
    return;
  }
  const char quote = unescaped.find('"') == std::string::npos ? '"' : '\'';
  text.append(1, quote).append(argument).append(1, quote);
}

}  // namespace

RunString makeRunString(const std::optional<std::string>& program,
                        const std::optional<std::vector<std::string>>& programArguments) {
  RunString result{.run = program.value_or(""), .iconPath = {}};
  if (!programArguments || programArguments->empty()) return result;

  const std::string& first = programArguments->front();
  const bool repeatsProgram = first == result.run || first == String::lastPathComponent(result.run);
  result.iconPath = result.run.empty() ? first : result.run;
  for (std::size_t i = repeatsProgram ? 1 : 0; i < programArguments->size(); ++i) {
    if (!result.run.empty()) result.run += ' ';
    appendArgument(result.run, (*programArguments)[i]);
  }
  return result;
}

}  // namespace mirvel::launchd
