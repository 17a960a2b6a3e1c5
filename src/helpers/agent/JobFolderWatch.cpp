#include "helpers/agent/JobFolderWatch.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace mirvel::agent {

namespace fs = std::filesystem;
using Scope = host::PathWatch::Scope;

JobFolderWatch::JobFolderWatch(const Roots& roots, Console& console)
    : m_roots(roots), m_watch(host::makePathWatch(&console)) {
  for (const Kind kind : Kind::monitoredKinds) {
    const auto folder = kind.folderURL(roots);
    if (!folder) continue;
    m_watch->add(*folder, Scope::Contents);
    m_folders.emplace(*folder, kind);
  }
}

std::set<Kind::Case> JobFolderWatch::take() {
  std::set<Kind::Case> kinds;
  for (const std::string& path : m_watch->take()) {
    const auto [begin, end] = m_folders.equal_range(path);
    for (auto folder = begin; folder != end; ++folder) kinds.insert(folder->second);
    if (const auto beside = m_beside.find(path); beside != m_beside.end()) kinds.insert(beside->second);
  }
  return kinds;
}

std::set<Kind::Case> JobFolderWatch::follow(const KnownJobs& jobs) {
  auto wanted = linksAndItems(jobs);
  for (const auto& [path, kind] : m_beside) {
    if (!wanted.contains(path)) m_watch->remove(path);
  }
  std::set<Kind::Case> added;
  for (const auto& [path, kind] : wanted) {
    if (m_beside.contains(path)) continue;
    m_watch->add(path, Scope::Contents);
    added.insert(kind);
  }
  m_beside = std::move(wanted);
  return added;
}

/// The links among the jobs, and all folders for startup items, which needn't be items yet.
std::map<std::string, Kind::Case> JobFolderWatch::linksAndItems(const KnownJobs& jobs) const {
  std::map<std::string, Kind::Case> result;
  std::error_code failure;
  for (const auto& [path, job] : jobs) {
    if (fs::is_symlink(path, failure)) result.emplace(path, job.kind);
  }
  for (const Kind kind : {Kind::localStartupItem, Kind::systemStartupItem}) {
    fs::directory_iterator entry(*Kind(kind).folderURL(m_roots), failure), end;
    for (; !failure && entry != end; entry.increment(failure)) {
      std::error_code unknown;
      if (entry->is_directory(unknown)) result.emplace(entry->path(), kind);
    }
  }
  return result;
}

}  // namespace mirvel::agent
