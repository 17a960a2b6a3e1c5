#include "core/scripts/SyntaxHelper.h"

#include <algorithm>
#include <array>

#include "core/text/Ascii.h"
#include "core/text/Strings.h"

namespace mirvel::SyntaxHelper {

namespace {

struct Interpreter {
  std::string_view name;
  SyntaxType syntax;
};

constexpr std::array interpreters{
    Interpreter{"sh", SyntaxType::shell},          Interpreter{"ash", SyntaxType::shell},
    Interpreter{"bash", SyntaxType::shell},        Interpreter{"csh", SyntaxType::shell},
    Interpreter{"dash", SyntaxType::shell},        Interpreter{"fish", SyntaxType::shell},
    Interpreter{"ksh", SyntaxType::shell},         Interpreter{"tcsh", SyntaxType::shell},
    Interpreter{"zsh", SyntaxType::shell},         Interpreter{"perl", SyntaxType::perl},
    Interpreter{"php", SyntaxType::php},           Interpreter{"pypy", SyntaxType::python},
    Interpreter{"python", SyntaxType::python},     Interpreter{"pythonw", SyntaxType::python},
    Interpreter{"ruby", SyntaxType::ruby},         Interpreter{"swift", SyntaxType::swift},
    Interpreter{"deno", SyntaxType::javaScript},   Interpreter{"node", SyntaxType::javaScript},
    Interpreter{"nodejs", SyntaxType::javaScript}, Interpreter{"osascript", SyntaxType::appleScript},
    Interpreter{"awk", SyntaxType::awk},           Interpreter{"gawk", SyntaxType::awk},
    Interpreter{"mawk", SyntaxType::awk},          Interpreter{"lua", SyntaxType::lua},
    Interpreter{"luajit", SyntaxType::lua},        Interpreter{"tclsh", SyntaxType::tcl},
    Interpreter{"wish", SyntaxType::tcl},
};

/// Removes the first word from the line and returns it.
std::string_view nextWord(std::string_view& line) {
  line = String::trim(line, true);
  const std::string_view word = line.substr(0, line.find_first_of(" \t\r"));
  line.remove_prefix(word.size());
  return word;
}

/// "python" of "python3.12".
std::string_view withoutVersion(std::string_view name) {
  while (!name.empty() && (Ascii::isDigit(name.back()) || name.back() == '.' || name.back() == '-')) {
    name.remove_suffix(1);
  }
  return name;
}

/// The program that env(1) runs, after its options and variable assignments.
std::string_view programOfEnv(std::string_view line) {
  std::string_view word = nextWord(line);
  while (word.starts_with('-') || word.find('=') != std::string_view::npos) word = nextWord(line);
  return word;
}

SyntaxType syntaxOfInterpreter(std::string_view line) {
  std::string_view program = String::lastPathComponent(nextWord(line));
  if (program == "env") program = String::lastPathComponent(programOfEnv(line));
  const std::string_view name = withoutVersion(program);
  const auto* found = std::find_if(interpreters.begin(), interpreters.end(),
                                   [name](const Interpreter& interpreter) { return interpreter.name == name; });
  return found == interpreters.end() ? SyntaxType::none : found->syntax;
}

}  // namespace

SyntaxType determineSyntaxFromLowercasedFirstLine(std::string_view line) {
  if (line.starts_with("#!")) return syntaxOfInterpreter(line.substr(2));
  if (line.starts_with("<?xml")) return SyntaxType::xml;
  if (line.starts_with("<?")) return SyntaxType::php;
  if (line.starts_with("%!")) return SyntaxType::none;  // PostScript
  if (line.starts_with('%')) return SyntaxType::tex;
  return SyntaxType::none;
}

std::optional<SyntaxType> syntaxOfText(std::string_view text) {
  const std::string_view line = text.substr(0, text.find('\n'));
  if (!line.starts_with("#!") && !line.starts_with('%') && !line.starts_with("<?")) return std::nullopt;
  return determineSyntaxFromLowercasedFirstLine(Ascii::lower(line));
}

}  // namespace mirvel::SyntaxHelper
