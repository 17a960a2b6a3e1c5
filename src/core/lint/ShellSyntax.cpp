#include "core/lint/ShellSyntax.h"

#include <algorithm>
#include <array>

#include "core/text/Strings.h"

namespace mirvel::lint {

namespace {

constexpr std::array<std::string_view, 9> shells = {"sh", "bash", "zsh", "dash", "ksh", "csh", "tcsh", "fish", "rbash"};
constexpr std::array<std::string_view, 14> operators = {">",  ">>", "<",  "<<", "|",    "||",  "&",
                                                        "&&", ";",  "2>", "&>", "2>&1", "2>>", "1>&2"};
constexpr std::array<std::string_view, 4> comparingPrograms = {"find", "test", "[", "expr"};

template <std::size_t count>
bool contains(const std::array<std::string_view, count>& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// `-c`, or combined short options that contain it, such as `-lc`.
bool isCommandOption(std::string_view word) {
  return word.size() > 1 && word[0] == '-' && word[1] != '-' && word.find('c') != std::string_view::npos;
}

}  // namespace

std::size_t shellScriptStart(const std::vector<std::string>& words) {
  bool isShell = false;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (isShell && isCommandOption(words[i])) return i + 1;
    isShell = isShell || contains(shells, String::lastPathComponent(words[i]));
  }
  return words.size();
}

bool isShellSyntax(std::string_view word) {
  const bool isSubstitution = word.size() > 2 && ((word.starts_with("$(") && word.ends_with(')')) ||
                                                  (word.starts_with('`') && word.ends_with('`')));
  return isSubstitution || contains(operators, word);
}

bool takesOperators(const std::vector<std::string>& words) {
  return std::any_of(words.begin(), words.end(), [](const std::string& word) {
    return word == "-exec" || contains(comparingPrograms, String::lastPathComponent(word));
  });
}

}  // namespace mirvel::lint
