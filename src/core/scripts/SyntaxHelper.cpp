#include "core/scripts/SyntaxHelper.h"

#include <algorithm>
#include <array>

#include "core/text/Ascii.h"
#include "core/text/Strings.h"

namespace mirvel::SyntaxHelper {

namespace {

struct LanguageOfTool {
  std::string_view name;
  SyntaxType syntax;
};

constexpr std::array interpreters{
    LanguageOfTool{"sh", SyntaxType::shell},          LanguageOfTool{"ash", SyntaxType::shell},
    LanguageOfTool{"bash", SyntaxType::shell},        LanguageOfTool{"csh", SyntaxType::shell},
    LanguageOfTool{"dash", SyntaxType::shell},        LanguageOfTool{"fish", SyntaxType::shell},
    LanguageOfTool{"ksh", SyntaxType::shell},         LanguageOfTool{"tcsh", SyntaxType::shell},
    LanguageOfTool{"zsh", SyntaxType::shell},         LanguageOfTool{"perl", SyntaxType::perl},
    LanguageOfTool{"php", SyntaxType::php},           LanguageOfTool{"pypy", SyntaxType::python},
    LanguageOfTool{"python", SyntaxType::python},     LanguageOfTool{"pythonw", SyntaxType::python},
    LanguageOfTool{"ruby", SyntaxType::ruby},         LanguageOfTool{"swift", SyntaxType::swift},
    LanguageOfTool{"deno", SyntaxType::javaScript},   LanguageOfTool{"node", SyntaxType::javaScript},
    LanguageOfTool{"nodejs", SyntaxType::javaScript}, LanguageOfTool{"osascript", SyntaxType::appleScript},
    LanguageOfTool{"awk", SyntaxType::awk},           LanguageOfTool{"gawk", SyntaxType::awk},
    LanguageOfTool{"mawk", SyntaxType::awk},          LanguageOfTool{"lua", SyntaxType::lua},
    LanguageOfTool{"luajit", SyntaxType::lua},        LanguageOfTool{"tclsh", SyntaxType::tcl},
    LanguageOfTool{"wish", SyntaxType::tcl},
};

constexpr std::array extensions{
    LanguageOfTool{"sh", SyntaxType::shell},
    LanguageOfTool{"bash", SyntaxType::shell},
    LanguageOfTool{"zsh", SyntaxType::shell},
    LanguageOfTool{"ksh", SyntaxType::shell},
    LanguageOfTool{"csh", SyntaxType::shell},
    LanguageOfTool{"tcsh", SyntaxType::shell},
    LanguageOfTool{"fish", SyntaxType::shell},
    LanguageOfTool{"command", SyntaxType::shell},
    LanguageOfTool{"pl", SyntaxType::perl},
    LanguageOfTool{"pm", SyntaxType::perl},
    LanguageOfTool{"php", SyntaxType::php},
    LanguageOfTool{"py", SyntaxType::python},
    LanguageOfTool{"pyw", SyntaxType::python},
    LanguageOfTool{"rb", SyntaxType::ruby},
    LanguageOfTool{"swift", SyntaxType::swift},
    LanguageOfTool{"js", SyntaxType::javaScript},
    LanguageOfTool{"mjs", SyntaxType::javaScript},
    LanguageOfTool{"cjs", SyntaxType::javaScript},
    LanguageOfTool{"applescript", SyntaxType::appleScript},
    LanguageOfTool{"awk", SyntaxType::awk},
    LanguageOfTool{"lua", SyntaxType::lua},
    LanguageOfTool{"tcl", SyntaxType::tcl},
    LanguageOfTool{"tex", SyntaxType::tex},
    LanguageOfTool{"xml", SyntaxType::xml},
    LanguageOfTool{"plist", SyntaxType::xml},
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

template <std::size_t size>
SyntaxType syntaxNamed(const std::array<LanguageOfTool, size>& table, std::string_view name) {
  const auto* found =
      std::find_if(table.begin(), table.end(), [name](const LanguageOfTool& row) { return row.name == name; });
  return found == table.end() ? SyntaxType::none : found->syntax;
}

SyntaxType syntaxOfInterpreter(std::string_view line) {
  std::string_view program = String::lastPathComponent(nextWord(line));
  if (program == "env") program = String::lastPathComponent(programOfEnv(line));
  return syntaxNamed(interpreters, withoutVersion(program));
}

}  // namespace

std::optional<SyntaxType> syntaxOfText(std::string_view text) {
  const std::string line = Ascii::lower(text.substr(0, text.find('\n')));
  if (line.starts_with("#!")) return syntaxOfInterpreter(std::string_view(line).substr(2));
  if (line.starts_with("<?xml")) return SyntaxType::xml;
  if (line.starts_with("<?")) return SyntaxType::php;
  if (line.starts_with("%!")) return SyntaxType::none;  // PostScript
  if (line.starts_with('%')) return SyntaxType::tex;
  return std::nullopt;
}

SyntaxType determineSyntaxFromLowercasedFirstLine(std::string_view line) {
  return syntaxOfText(line).value_or(SyntaxType::none);
}

SyntaxType createSyntaxType(const URL& file, std::string_view text) {
  const auto byText = syntaxOfText(text);
  if (byText && *byText != SyntaxType::none) return *byText;
  const std::string name = Ascii::lower(file.lastPathComponent());
  const std::string_view stem = String::withoutExtension(name);
  if (text.starts_with("#!") || stem.size() == name.size()) return SyntaxType::none;
  return syntaxNamed(extensions, std::string_view(name).substr(stem.size() + 1));
}

}  // namespace mirvel::SyntaxHelper
