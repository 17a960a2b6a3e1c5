#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>

#include "core/files/Roots.h"
#include "core/notifications/JobInventory.h"
#include "core/ports/Console.h"
#include "helpers/host/FileSystemWatch.h"

namespace mirvel::agent {

/// Notices changes in the folders whose jobs are watched, whether they exist or not, including those of files to which
/// links there lead, and of the files of startup items. For one thread.
class JobFolderWatch {
 public:
  /// Both must outlive this.
  JobFolderWatch(const Roots& roots, Console& console);

  /// See `PathWatch`.
  int descriptor() const { return m_watch->descriptor(); }
  bool isPolling() const { return m_watch->isPolling(); }
  /// The kinds in whose folders something may have changed since the last call.
  std::set<Kind::Case> take();
  /// To be called after each scan: adapts what is watched beside the folders themselves. Returns the kinds where
  /// something wasn't watched before, and may have changed since the scan.
  std::set<Kind::Case> follow(const KnownJobs& jobs);

 private:
  std::map<std::string, Kind::Case> linksAndItems(const KnownJobs& jobs) const;

  const Roots& m_roots;
  std::unique_ptr<host::PathWatch> m_watch;
  std::multimap<std::string, Kind::Case> m_folders;
  std::map<std::string, Kind::Case> m_beside;
};

}  // namespace mirvel::agent
