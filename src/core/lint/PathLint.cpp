#include "core/lint/PathLint.h"

#include <optional>
#include <string>
#include <vector>

#include "core/jobfile/DecodingFailure.h"
#include "core/lint/Placeholder.h"

namespace mirvel::lint {

namespace {

class PathCheck {
 public:
  PathCheck(const TargetMachine& machine, Findings& findings)
      : m_homeFolder(machine.homeFolder), m_findings(findings) {}

  void check(const std::string& keyPath, const std::string& text) {
    const auto placeholder = findPlaceholder(text);
    if (placeholder) m_findings.warning(keyPath, placeholderMessage(*placeholder, m_homeFolder));
  }

  /// For nested values: the key path is only composed if there is something to report.
  void check(const jobfile::Place& place, const std::optional<std::string>& text) {
    const auto placeholder = text ? findPlaceholder(*text) : std::nullopt;
    if (!placeholder) return;
    if (m_findings.isFull(Severity::Warning)) return m_findings.addUnreported(Severity::Warning, 1);
    m_findings.warning(place.text(), placeholderMessage(*placeholder, m_homeFolder));
  }

  void check(const std::string& keyPath, const std::optional<std::string>& text) {
    if (text) check(keyPath, *text);
  }

  void check(const std::string& keyPath, const std::optional<std::vector<std::string>>& texts) {
    if (!texts) return;
    for (std::size_t i = 0; i < texts->size(); ++i) check(propertylist::childPath(keyPath, i), (*texts)[i]);
  }

 private:
  const std::string& m_homeFolder;
  Findings& m_findings;
};

void checkSocket(const jobfile::Place& place, const jobfile::Sockets::SubDictionary& socket, PathCheck& paths) {
  paths.check(place.key("SockPathName"), socket.sockPathName);
  for (std::size_t i = 0; i < socket.array.size(); ++i) {
    checkSocket(place.index(i), socket.array[i], paths);
  }
}

void checkPathState(const jobfile::Plist& record, PathCheck& paths) {
  if (!record.keepAlive || !record.keepAlive->pathState) return;
  for (const auto& [path, isWanted] : *record.keepAlive->pathState) {
    paths.check(propertylist::childPath("KeepAlive.PathState", path), path);
  }
}

}  // namespace

void checkPaths(const Subject& subject, const TargetMachine& machine, Findings& findings) {
  const jobfile::Plist& record = subject.record;
  PathCheck paths(machine, findings);
  paths.check("Label", record.name);
  paths.check("WorkingDirectory", record.workingDirectory);
  paths.check("RootDirectory", record.rootDirectory);
  paths.check("StandardInPath", record.standardInPath);
  paths.check("StandardOutPath", record.standardOutPath);
  paths.check("StandardErrorPath", record.standardErrorPath);
  paths.check("WatchPaths", record.watchPaths);
  paths.check("QueueDirectories", record.queueDirectories);
  checkPathState(record, paths);
  if (record.environmentVariables) {
    for (const auto& [name, value] : *record.environmentVariables) {
      paths.check(propertylist::childPath("EnvironmentVariables", name), value);
    }
  }
  if (!record.sockets) return;
  const jobfile::Place top;
  const jobfile::Place sockets = top.key("Sockets");
  for (const auto& [name, socket] : record.sockets->dictionaries) checkSocket(sockets.key(name), socket, paths);
}

}  // namespace mirvel::lint
