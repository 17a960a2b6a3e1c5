#include "core/lint/CommandLint.h"

#include <optional>
#include <string>
#include <vector>

#include "core/lint/Placeholder.h"
#include "core/lint/ShellSyntax.h"

namespace mirvel::lint {

namespace {

/// What launchd starts, and where the file says so.
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

void checkExistence(const Executable& executable, const Surroundings& surroundings, Findings& findings) {
  if (surroundings.exists(executable.path)) return;
  const std::string tool = firstWord(executable.path);
  if (tool != executable.path && surroundings.exists(tool)) {
    findings.warning(executable.keyPath, "launchd takes all of it for the path of one program; each argument of " +
                                             tool + " needs an element of its own in ProgramArguments");
  } else {
    findings.warning(executable.keyPath, executable.path + " doesn't exist here");
  }
}

/// What is worth knowing of a path that isn't absolute. A bare name is searched for by execvp(3).
std::string relativeAdvice(const Executable& executable) {
  if (executable.path.find(' ') != std::string::npos) return ", and each of its arguments needs an element of its own";
  const bool isSearched = executable.keyPath != "Program" && executable.path.find('/') == std::string::npos;
  return isSearched ? "; launchd looks for it in the system's own folders only" : "";
}

void checkExecutable(const Executable& executable, const Surroundings& surroundings, Findings& findings) {
  if (executable.path.empty()) {
    findings.error(executable.keyPath, "the path of the program is empty");
  } else if (const auto placeholder = findPlaceholder(executable.path)) {
    findings.warning(executable.keyPath, placeholderMessage(*placeholder, surroundings.homeFolder));
  } else if (executable.path.starts_with('/')) {
    checkExistence(executable, surroundings, findings);
  } else {
    findings.warning(executable.keyPath, "the path of the program isn't absolute" + relativeAdvice(executable));
  }
}

/// The arguments that the program gets as they stand, that is, not the script of a shell.
void checkArguments(const jobfile::Plist& record, const Surroundings& surroundings, Findings& findings) {
  if (!record.programArguments) return;
  const std::vector<std::string> words = wordsOf(record);
  const std::size_t scriptStart = shellScriptStart(words);
  const std::size_t offset = record.program ? 1 : 0;  // of the arguments in the words
  const bool mayTakeOperators = takesOperators(words);
  for (std::size_t i = 1; i < record.programArguments->size() && i + offset < scriptStart; ++i) {
    const std::string& argument = (*record.programArguments)[i];
    const std::string keyPath = propertylist::childPath("ProgramArguments", i);
    const auto expansion = leadingExpansion(argument);
    if (isShellSyntax(argument) && !mayTakeOperators) {
      findings.warning(keyPath, "launchd is no shell; the program gets " + argument + " as an argument");
    } else if (expansion && record.enableGlobbing != true) {
      findings.warning(keyPath, placeholderMessage(*expansion, surroundings.homeFolder));
    }
  }
}

}  // namespace

void checkCommand(const Subject& subject, const Surroundings& surroundings, Findings& findings) {
  const jobfile::Plist& record = subject.record;
  checkArguments(record, surroundings, findings);
  // Paths of a job in an application's bundle count from the bundle.
  if (subject.file.find("BundleProgram")) return;
  const bool isProgramRefused = subject.refusedKeys.count("Program") != 0;
  const auto executable = executableOf(record);
  if (executable && !isProgramRefused) return checkExecutable(*executable, surroundings, findings);
  if (executable || isProgramRefused || subject.refusedKeys.count("ProgramArguments") != 0) return;
  // An application may name the program when it installs the job.
  findings.warning("", "there is nothing to run: neither Program nor ProgramArguments");
}

}  // namespace mirvel::lint
