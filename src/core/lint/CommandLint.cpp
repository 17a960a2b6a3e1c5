#include "core/lint/CommandLint.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/lint/Placeholder.h"
#include "core/lint/ShellSyntax.h"
#include "core/text/Strings.h"

namespace mirvel::lint {

namespace {

using Path = jobfile::OpaqueValue::Path;

/// The program that launchd starts, and the key that names it.
struct Executable {
  std::string path;
  std::string keyPath;
  Path steps;
};

std::optional<Executable> executableOf(const jobfile::Plist& record) {
  if (record.program) return Executable{*record.program, "Program", {"Program"}};
  if (!record.programArguments || record.programArguments->empty()) return std::nullopt;
  return Executable{record.programArguments->front(), "ProgramArguments[0]", {"ProgramArguments", "[0]"}};
}

std::vector<std::string> wordsOf(const jobfile::Plist& record) {
  std::vector<std::string> words;
  if (record.program) words.push_back(*record.program);
  for (const std::string& argument : record.programArguments.value_or(std::vector<std::string>())) {
    words.push_back(argument);
  }
  return words;
}

std::string firstWord(const std::string& text) {
  return text.substr(0, text.find(' '));
}

/// Splits the first argument at its spaces, if there is nothing that could have been meant to group words.
std::optional<Fix> splitFix(const Executable& executable, const jobfile::Plist& record) {
  const std::string& command = executable.path;
  if (record.program || command.find_first_of("\"'\\$`|&;<>*?()") != std::string::npos) return std::nullopt;
  const std::vector<std::string>& arguments = *record.programArguments;
  const auto words = String::split(command, ' ');
  propertylist::Array after;
  for (const auto& word : words) {
    if (!word.empty()) after.emplace_back(word);
  }
  for (std::size_t i = 1; i < arguments.size(); ++i) after.emplace_back(arguments[i]);
  return Fix{
      .title = clause("Split Into Arguments"),
      .path = {"ProgramArguments"},
      .change = Fix::Replace{.from = propertylist::Array(arguments.begin(), arguments.end()), .to = std::move(after)}};
}

void checkExistence(const Executable& executable, const jobfile::Plist& record, const TargetMachine& machine,
                    Findings& findings) {
  const auto type = machine.typeOf(executable.path);
  if (type == TargetMachine::FileType::Folder) {
    return findings.warning(executable.keyPath, clause("%@ is a folder, not a program", {executable.path}));
  }
  if (type != TargetMachine::FileType::Missing) return;
  const std::string tool = firstWord(executable.path);
  if (tool != executable.path && machine.typeOf(tool) == TargetMachine::FileType::Other) {
    findings.warning(executable.keyPath,
                     clause("launchd treats all of this as the path of one program; each argument of %@ must be a "
                            "separate element of ProgramArguments",
                            {tool}),
                     splitFix(executable, record));
  } else {
    findings.warning(executable.keyPath, clause("%@ doesn’t exist on this machine", {executable.path}));
  }
}

/// Explains a relative path. execvp(3) searches for a bare name.
Clause relativeClause(const Executable& executable) {
  if (executable.path.find(' ') != std::string::npos) {
    return clause("the path of the program isn’t absolute; each of its arguments must be a separate element");
  }
  const bool isSearched = executable.keyPath != "Program" && executable.path.find('/') == std::string::npos;
  return isSearched ? clause(
                          "the path of the program isn’t absolute; launchd searches for it in the system’s folders "
                          "only")
                    : clause("the path of the program isn’t absolute");
}

void checkExecutable(const Executable& executable, const Subject& subject, const TargetMachine& machine,
                     Findings& findings) {
  if (executable.path.empty()) {
    findings.error(executable.keyPath, clause("the path of the program is empty"));
  } else if (const auto placeholder = findPlaceholder(executable.path)) {
    const std::string home = subject.isOfOneUser() ? machine.homeFolder : "";
    warnOfPlaceholder(*placeholder, executable.path, home, executable.keyPath, executable.steps, findings);
  } else if (!executable.path.starts_with('/')) {
    findings.warning(executable.keyPath, relativeClause(executable));
  } else if (!subject.has("RootDirectory")) {
    checkExistence(executable, subject.record, machine, findings);
  }
}

/// Checks the arguments that the program receives literally, up to the script of a shell.
void checkArguments(const jobfile::Plist& record, const std::string& homeFolder, Findings& findings) {
  if (!record.programArguments) return;
  const std::vector<std::string> words = wordsOf(record);
  const std::size_t scriptStart = shellScriptStart(words);
  const std::size_t offset = record.program ? 1 : 0;  // index of the first argument among the words
  const bool mayTakeOperators = takesOperators(words);
  for (std::size_t i = 1; i < record.programArguments->size() && i + offset < scriptStart; ++i) {
    const std::string& argument = (*record.programArguments)[i];
    const std::string key = "ProgramArguments";
    const std::string keyPath = propertylist::childPath(key, i);
    const auto expansion = leadingExpansion(argument);
    if (isShellSyntax(argument) && !mayTakeOperators) {
      findings.warning(keyPath,
                       clause("launchd isn’t a shell; it passes %@ to the program as an argument", {argument}));
    } else if (expansion && record.enableGlobbing != true) {
      warnOfPlaceholder(*expansion, argument, homeFolder, keyPath, {key, propertylist::childPath({}, i)}, findings);
    }
  }
}

}  // namespace

void checkCommand(const Subject& subject, const TargetMachine& machine, Findings& findings) {
  const jobfile::Plist& record = subject.record;
  checkArguments(record, subject.isOfOneUser() ? machine.homeFolder : "", findings);
  // Paths of a job in an application bundle are relative to the bundle.
  if (subject.file.find("BundleProgram")) return;
  const bool isProgramRejected = subject.rejectedKeys.count("Program") != 0;
  const auto executable = executableOf(record);
  if (executable && !isProgramRejected) return checkExecutable(*executable, subject, machine, findings);
  if (executable || isProgramRejected || subject.rejectedKeys.count("ProgramArguments") != 0) return;
  // Only a warning: an application may add the program when it installs the job.
  findings.warning("", clause("the job has nothing to run: neither Program nor ProgramArguments is set"));
}

}  // namespace mirvel::lint
