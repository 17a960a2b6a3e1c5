#include "core/documents/SyntaxCheck.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <system_error>

#include "core/files/ReplaceFile.h"
#include "core/process/Commands.h"
#include "core/text/Ascii.h"
#include "core/text/Bytes.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace {

/// Parses without compiling or importing anything.
constexpr const char* pythonProgram = "import ast, sys; ast.parse(open(sys.argv[1], 'rb').read(), sys.argv[1])";

/// The shell that the first line names; sh if it doesn't name one that is known.
std::string shellOf(std::string_view text, const Commands& commands) {
  const std::string_view line = text.starts_with("#!") ? text.substr(0, text.find('\n')) : std::string_view();
  for (const std::string_view word : String::split(line, ' ')) {
    const std::string_view name = String::lastPathComponent(String::trim(word, true));
    if (name == "bash") return commands.bash;
    if (name == "zsh") return commands.zsh;
    if (name == "ksh") return commands.ksh;
    if (name == "csh" || name == "tcsh") return commands.csh;
    if (name == "fish") return {};
  }
  return commands.shell;
}

/// The number after the path, as in "script: line 3: ...", "script: 3: ...", "script:3: ..." and "File "script", line
/// 3"; 0 if there is none.
std::size_t lineIn(std::string_view text, const std::string& path) {
  const std::size_t found = text.find(path);
  if (found == std::string_view::npos) return 0;
  std::string_view rest = text.substr(found + path.size());
  rest = rest.substr(0, rest.find('\n'));
  const auto* const digit = std::find_if(rest.begin(), rest.end(), [](char c) { return Ascii::isDigit(c); });
  std::size_t line = 0;
  (void)std::from_chars(digit, rest.end(), line);  // stays 0 without digits
  return line;
}

std::string without(std::string text, const std::string& part) {
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part)) text.erase(at, part.size());
  return text;
}

/// The text without what surrounds the removed path: punctuation, and "line 3".
std::string_view withoutPlace(std::string_view line) {
  constexpr std::string_view punctuation = ": \t,\"";
  const auto skip = [&] { line.remove_prefix(std::min(line.find_first_not_of(punctuation), line.size())); };
  skip();
  if (line.starts_with("line ")) line.remove_prefix(5);
  const std::size_t digits = std::min(line.find_first_not_of("0123456789"), line.size());
  if (digits > 0 && digits < line.size() && line[digits] == ':') line.remove_prefix(digits);
  skip();
  return line;
}

}  // namespace

std::optional<SyntaxCheck> SyntaxCheck::of(SyntaxType syntax, std::string_view text, const Commands& commands) {
  SyntaxCheck check;
  switch (syntax) {
    case SyntaxType::shell:
      check = {shellOf(text, commands), {"-n"}};
      break;
    case SyntaxType::python:
      check = {commands.python, {"-c", pythonProgram}};
      break;
    case SyntaxType::ruby:
      check = {commands.ruby, {"-c"}};
      break;
    case SyntaxType::php:
      check = {commands.php, {"-l"}};
      break;
    default:
      return std::nullopt;
  }
  return isProgram(check.program) ? std::optional(check) : std::nullopt;
}

Result<std::optional<SyntaxProblem>> SyntaxCheck::run(std::string_view bytes, const std::filesystem::path& folder,
                                                      ProcessRunner& runner) const {
  constexpr std::chrono::seconds limit{10};
  if (auto made = makePrivateFolder(folder); !made) return made.error();
  const std::filesystem::path file = folder / (makeUuid() + ".check");
  if (auto written = replaceFile(file, bytes, privateFile); !written) return written.error();
  auto all = arguments;
  all.push_back(file.string());
  const auto result = runner.run(program, all, limit);
  std::error_code ignored;  // it is in the program's own folder, and private
  std::filesystem::remove(file, ignored);
  if (!result) return result.error();
  if (result->exitStatus == 0) return std::optional<SyntaxProblem>();
  return std::optional(problemIn(result->complaints.empty() ? result->output : result->complaints, file.string()));
}

SyntaxProblem problemIn(std::string_view complaints, const std::string& path) {
  constexpr std::string_view pythonMark = "Error: ";
  SyntaxProblem problem{.line = lineIn(complaints, path), .message = {}};
  for (const std::string_view line : String::split(complaints, '\n')) {
    const std::string_view text = String::trim(line, true);
    const bool isPlace = text.starts_with("Traceback") || text.starts_with("File \"");
    if (text.empty() || isPlace) continue;
    const bool isPython = text.find(pythonMark) != std::string_view::npos;
    if (!problem.message.empty() && !isPython) continue;
    const std::string words = without(std::string(text), path);
    problem.message = withoutPlace(words);
    if (isPython) break;
  }
  return problem;
}

}  // namespace mirvel
