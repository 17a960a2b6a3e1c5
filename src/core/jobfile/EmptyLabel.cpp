#include "core/jobfile/EmptyLabel.h"

#include <string_view>

#include "core/base/Uuid.h"
#include "core/jobfile/Plist.h"
#include "core/text/Strings.h"

namespace mirvel::jobfile {

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

namespace {

std::string_view withoutExtension(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  const bool isExtension = dot != std::string_view::npos && dot != 0 && dot + 1 != name.size();
  return isExtension ? name.substr(0, dot) : name;
}

/// A label for a command line: what its last path is called. Empty for a command too short to tell.
std::string labelOf(std::string_view run) {
  constexpr std::size_t shortestCommand = 4;
  constexpr std::size_t longestLabel = 48;
  if (String::characterCount(run) < shortestCommand) return {};
  std::string label = replaceEscapedBlanks(withoutExtension(String::lastPathComponent(run)), " ");
  std::erase_if(label, [](char c) { return c == '"' || c == '\'' || c == '\\'; });
  if (String::characterCount(label) <= longestLabel) return label;
  return std::string(String::trim(String::firstCharacters(label, longestLabel)));
}

}  // namespace

void Plist::fillEmptyLabel() {
  if (!name.empty()) return;
  name = labelOf(run);
  if (name.empty()) name = makeUuid();
}

}  // namespace mirvel::jobfile
