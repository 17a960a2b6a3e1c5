#include "core/lint/FileLint.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/lint/Placeholder.h"
#include "core/text/Strings.h"

namespace mirvel::lint {

namespace {

using FileType = TargetMachine::FileType;

/// Programs whose first argument, if it is a path, is the script that they run.
constexpr auto interpreters =
    std::to_array<std::string_view>({"sh", "bash", "zsh", "dash", "ksh", "csh", "tcsh", "fish", "osascript", "perl",
                                     "php", "python", "python2", "python3", "ruby", "node"});

class FileCheck {
 public:
  FileCheck(const TargetMachine& machine, Findings& findings) : m_machine(machine), m_findings(findings) {}

  void folder(const std::string& keyPath, const std::string& path) {
    if (!isComplete(path)) return;
    if (m_machine.lacks(path)) m_findings.warning(keyPath, missing(path));
    noFile(keyPath, path);
  }
  /// launchd waits for a missing folder like for a watched path.
  void queue(const std::string& keyPath, const std::string& path) {
    watched(keyPath, path);
    if (isComplete(path)) noFile(keyPath, path);
  }
  void input(const std::string& keyPath, const std::string& path) {
    if (isComplete(path) && m_machine.lacks(path)) m_findings.warning(keyPath, missing(path));
  }
  /// launchd creates the file, but not its folder.
  void output(const std::string& keyPath, const std::string& path) {
    if (!isComplete(path)) return;
    const std::string parent = parentOf(path);
    if (m_machine.typeOf(path) == FileType::Folder) {
      m_findings.warning(keyPath, clause("%@ is a folder, not a file", {path}));
    } else if (m_machine.lacks(parent)) {
      m_findings.warning(keyPath, clause("the folder %@ doesn’t exist on this machine", {parent}));
    }
  }
  /// launchd waits for a missing path to appear, as long as there is a folder in which it can.
  void watched(const std::string& keyPath, const std::string& path) {
    if (isComplete(path) && m_machine.lacks(path) && m_machine.lacks(parentOf(path))) {
      m_findings.warning(keyPath, missing(path));
    }
  }
  void executed(const std::string& keyPath, const std::string& path) {
    if (isComplete(path) && m_machine.isOpen(path)) {
      m_findings.warning(keyPath, clause("every user of this machine can change %@", {path}));
    }
  }

 private:
  /// Other paths have findings of their own.
  static bool isComplete(const std::string& path) { return path.starts_with('/') && !findPlaceholder(path); }
  static Clause missing(const std::string& path) { return clause("%@ doesn’t exist on this machine", {path}); }
  static std::string parentOf(const std::string& path) {
    const std::filesystem::path whole(path);
    return (whole.has_filename() ? whole : whole.parent_path()).parent_path().string();
  }

  void noFile(const std::string& keyPath, const std::string& path) {
    if (m_machine.typeOf(path) == FileType::Other) m_findings.warning(keyPath, clause("%@ isn’t a folder", {path}));
  }

  const TargetMachine& m_machine;
  Findings& m_findings;
};

void checkScript(const jobfile::Plist& record, FileCheck& files) {
  const std::vector<std::string> arguments = record.programArguments.value_or(std::vector<std::string>());
  if (record.program) {
    files.executed("Program", *record.program);
  } else if (!arguments.empty()) {
    files.executed("ProgramArguments[0]", arguments[0]);
  }
  if (arguments.size() < 2) return;
  const std::string_view name = String::lastPathComponent(record.program ? *record.program : arguments[0]);
  if (std::find(interpreters.begin(), interpreters.end(), name) == interpreters.end()) return;
  files.input("ProgramArguments[1]", arguments[1]);
  files.executed("ProgramArguments[1]", arguments[1]);
}

template <typename Check>
void forEach(const char* key, const std::optional<std::vector<std::string>>& paths, Check check) {
  for (std::size_t i = 0; paths && i < paths->size(); ++i) check(propertylist::childPath(key, i), (*paths)[i]);
}

/// Devices, such as /dev/null, can be both.
void checkLoop(const jobfile::Plist& record, Findings& findings) {
  const auto& input = record.standardInPath;
  if (!input || input->empty() || input->starts_with("/dev/")) return;
  if (input == record.standardOutPath || input == record.standardErrorPath) {
    findings.warning("StandardInPath", clause("the job reads what it writes itself to %@", {*input}));
  }
}

}  // namespace

void checkFiles(const Subject& subject, const TargetMachine& machine, Findings& findings) {
  const jobfile::Plist& record = subject.record;
  checkLoop(record, findings);
  FileCheck files(machine, findings);
  if (record.rootDirectory) files.folder("RootDirectory", *record.rootDirectory);
  if (subject.has("RootDirectory")) return;
  if (!subject.file.find("BundleProgram")) checkScript(record, files);
  if (record.workingDirectory) files.folder("WorkingDirectory", *record.workingDirectory);
  if (record.standardInPath) files.input("StandardInPath", *record.standardInPath);
  if (record.standardOutPath) files.output("StandardOutPath", *record.standardOutPath);
  if (record.standardErrorPath) files.output("StandardErrorPath", *record.standardErrorPath);
  forEach("WatchPaths", record.watchPaths,
          [&](const auto& keyPath, const auto& path) { files.watched(keyPath, path); });
  forEach("QueueDirectories", record.queueDirectories,
          [&](const auto& keyPath, const auto& path) { files.queue(keyPath, path); });
}

}  // namespace mirvel::lint
