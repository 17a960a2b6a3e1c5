#include "core/lint/PathLint.h"

#include <optional>
#include <string>
#include <vector>

#include "core/lint/Placeholder.h"
#include "core/plist/Place.h"

namespace mirvel::lint {

namespace {

class PathCheck {
 public:
  PathCheck(const Surroundings& surroundings, Findings& findings)
      : m_homeFolder(surroundings.homeFolder), m_findings(findings) {}

  void check(const std::string& keyPath, const std::string& text) {
    const auto placeholder = findPlaceholder(text);
    if (placeholder) m_findings.warning(keyPath, placeholderMessage(*placeholder, m_homeFolder));
  }

  /// Where a path is only worth putting together if there is something to tell.
  void check(const launchd::Place& place, const std::optional<std::string>& text) {
    const auto placeholder = text ? findPlaceholder(*text) : std::nullopt;
    if (!placeholder) return;
    if (m_findings.isFull(Severity::warning)) return m_findings.addUnreported(Severity::warning, 1);
    m_findings.warning(place.text(), placeholderMessage(*placeholder, m_homeFolder));
  }

  void check(const std::string& keyPath, const std::optional<std::string>& text) {
    if (text) check(keyPath, *text);
  }

  void check(const std::string& keyPath, const std::optional<std::vector<std::string>>& texts) {
    if (!texts) return;
    for (std::size_t i = 0; i < texts->size(); ++i) check(plist::childPath(keyPath, i), (*texts)[i]);
  }

 private:
  const std::string& m_homeFolder;
  Findings& m_findings;
};

void checkSocket(const launchd::Place& place, const launchd::Sockets::SubDictionary& socket, PathCheck& paths) {
  paths.check(place.key("SockPathName"), socket.sockPathName);
  for (std::size_t i = 0; i < socket.array.size(); ++i) {
    checkSocket(place.index(i), socket.array[i], paths);
  }
}

void checkPathState(const launchd::Plist& record, PathCheck& paths) {
  if (!record.keepAlive || !record.keepAlive->pathState) return;
  for (const auto& [path, isWanted] : *record.keepAlive->pathState) {
    paths.check(plist::childPath("KeepAlive.PathState", path), path);
  }
}

}  // namespace

void checkPaths(const Subject& subject, const Surroundings& surroundings, Findings& findings) {
  const launchd::Plist& record = subject.record;
  PathCheck paths(surroundings, findings);
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
      paths.check(plist::childPath("EnvironmentVariables", name), value);
    }
  }
  if (!record.sockets) return;
  const launchd::Place top;
  const launchd::Place sockets = top.key("Sockets");
  for (const auto& [name, socket] : record.sockets->dictionaries) checkSocket(sockets.key(name), socket, paths);
}

}  // namespace mirvel::lint
