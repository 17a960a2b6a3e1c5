#include "core/lint/PathLint.h"

#include <optional>
#include <string>
#include <vector>

#include "core/lint/Placeholder.h"

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

void checkSocket(const std::string& keyPath, const launchd::Sockets::SubDictionary& socket, PathCheck& paths) {
  paths.check(plist::childPath(keyPath, "SockPathName"), socket.sockPathName);
  for (std::size_t i = 0; i < socket.array.size(); ++i) {
    checkSocket(plist::childPath(keyPath, i), socket.array[i], paths);
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
  for (const auto& [name, socket] : record.sockets->dictionaries) {
    checkSocket(plist::childPath("Sockets", name), socket, paths);
  }
}

}  // namespace mirvel::lint
