#include "core/lint/CommandLint.h"

#include <optional>
#include <string>
#include <vector>

#include "core/lint/Placeholder.h"
#include "core/lint/ShellSyntax.h"

namespace mirvel::lint {

namespace {

/// The program that launchd starts, and the key that names it.
struct Executable {
  std::string path;
  std::string keyPath;
};

std::optional<Executable> executableOf(const jobfile::Plist& record) {
  if (record.program) return Executable{*record.program, "Program"};
  if (!record.programArguments || record.programArguments->empty()) return std::nullopt;
  return Executable{record.programArguments->front(), "ProgramArguments[0]"};
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

void checkExistence(const Executable& executable, const TargetMachine& machine, Findings& findings) {
  if (machine.exists(executable.path)) return;
  const std::string tool = firstWord(executable.path);
  if (tool != executable.path && machine.exists(tool)) {
    findings.warning(executable.keyPath, "launchd treats all of this as the path of one program; each argument of " +
                                             tool + " must be a separate element of ProgramArguments");
  } else {
    findings.warning(executable.keyPath, executable.path + " doesn't exist on this machine");
  }
}

/// Explains a relative path. execvp(3) searches for a bare name.
std::string relativeAdvice(const Executable& executable) {
  if (executable.path.find(' ') != std::string::npos) return "; each of its arguments must be a separate element";
  const bool isSearched = executable.keyPath != "Program" && executable.path.find('/') == std::string::npos;
  return isSearched ? "; launchd searches for it in the system's folders only" : "";
}

void checkExecutable(const Executable& executable, const TargetMachine& machine, Findings& findings) {
  if (executable.path.empty()) {
    findings.error(executable.keyPath, "the path of the program is empty");
  } else if (const auto placeholder = findPlaceholder(executable.path)) {
    findings.warning(executable.keyPath, placeholderMessage(*placeholder, machine.homeFolder));
  } else if (executable.path.starts_with('/')) {
    checkExistence(executable, machine, findings);
  } else {
    findings.warning(executable.keyPath, "the path of the program isn't absolute" + relativeAdvice(executable));
  }
}

/// Checks the arguments that the program receives literally, up to the script of a shell.
void checkArguments(const jobfile::Plist& record, const TargetMachine& machine, Findings& findings) {
  if (!record.programArguments) return;
  const std::vector<std::string> words = wordsOf(record);
  const std::size_t scriptStart = shellScriptStart(words);
  const std::size_t offset = record.program ? 1 : 0;  // index of the first argument among the words
  const bool mayTakeOperators = takesOperators(words);
  for (std::size_t i = 1; i < record.programArguments->size() && i + offset < scriptStart; ++i) {
    const std::string& argument = (*record.programArguments)[i];
    const std::string keyPath = propertylist::childPath("ProgramArguments", i);
    const auto expansion = leadingExpansion(argument);
    if (isShellSyntax(argument) && !mayTakeOperators) {
      findings.warning(keyPath, "launchd isn't a shell; it passes " + argument + " to the program as an argument");
    } else if (expansion && record.enableGlobbing != true) {
      findings.warning(keyPath, placeholderMessage(*expansion, machine.homeFolder));
    }
  }
}

}  // namespace

void checkCommand(const Subject& subject, const TargetMachine& machine, Findings& findings) {
  const jobfile::Plist& record = subject.record;
  checkArguments(record, machine, findings);
  // Paths of a job in an application bundle are relative to the bundle.
  if (subject.file.find("BundleProgram")) return;
  const bool isProgramRejected = subject.rejectedKeys.count("Program") != 0;
  const auto executable = executableOf(record);
  if (executable && !isProgramRejected) return checkExecutable(*executable, machine, findings);
  if (executable || isProgramRejected || subject.rejectedKeys.count("ProgramArguments") != 0) return;
  // Only a warning: an application may add the program when it installs the job.
  findings.warning("", "the job has nothing to run: neither Program nor ProgramArguments is set");
}

}  // namespace mirvel::lint
