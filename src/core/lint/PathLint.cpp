#include "core/lint/PathLint.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/jobfile/DecodingFailure.h"
#include "core/lint/Placeholder.h"

namespace mirvel::lint {

namespace {

using Path = jobfile::OpaqueValue::Path;

class PathCheck {
 public:
  PathCheck(std::string homeFolder, Findings& findings) : m_homeFolder(std::move(homeFolder)), m_findings(findings) {}

  /// `path` is empty if the text isn't a value that can be replaced.
  void check(const std::string& keyPath, const Path& path, const std::string& text) {
    const auto placeholder = findPlaceholder(text);
    if (placeholder) warnOfPlaceholder(*placeholder, text, m_homeFolder, keyPath, path, m_findings);
  }

  /// For nested values: the key path is only composed if there is something to report.
  void check(const jobfile::Place& place, const std::optional<std::string>& text) {
    const auto placeholder = text ? findPlaceholder(*text) : std::nullopt;
    if (!placeholder) return;
    if (m_findings.isFull(Severity::Warning)) return m_findings.addUnreported(Severity::Warning, 1);
    warnOfPlaceholder(*placeholder, *text, m_homeFolder, place.text(), {}, m_findings);
  }

  void check(const std::string& key, const std::optional<std::string>& text) {
    if (text) check(key, {key}, *text);
  }

  void check(const std::string& key, const std::optional<std::vector<std::string>>& texts) {
    if (!texts) return;
    for (std::size_t i = 0; i < texts->size(); ++i) {
      check(propertylist::childPath(key, i), {key, propertylist::childPath({}, i)}, (*texts)[i]);
    }
  }

 private:
  const std::string m_homeFolder;
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
    paths.check(propertylist::childPath("KeepAlive.PathState", path), {}, path);
  }
}

}  // namespace

void checkPaths(const Subject& subject, const TargetMachine& machine, Findings& findings) {
  const jobfile::Plist& record = subject.record;
  PathCheck paths(subject.isOfOneUser() ? machine.homeFolder : "", findings);
  paths.check("Label", {}, record.name);
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
      const std::string key = "EnvironmentVariables";
      paths.check(propertylist::childPath(key, name), {key, name}, value);
    }
  }
  if (!record.sockets) return;
  const jobfile::Place top;
  const jobfile::Place sockets = top.key("Sockets");
  for (const auto& [name, socket] : record.sockets->dictionaries) checkSocket(sockets.key(name), socket, paths);
}

}  // namespace mirvel::lint
