#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "core/ports/Console.h"
#include "core/scan/FetchOperation.h"
#include "core/session/Foundation.h"

namespace mirvel::bench {

/// Drops all messages.
class SilentConsole final : public Console {
 public:
  void print(const std::string&) override {}
  void log(const std::string&) override {}
};

/// A temporary machine whose user has a number of the generated job files, with modification times long ago.
class JobFolderOnDisk {
 public:
  explicit JobFolderOnDisk(std::size_t count);
  ~JobFolderOnDisk();
  JobFolderOnDisk(const JobFolderOnDisk&) = delete;
  JobFolderOnDisk& operator=(const JobFolderOnDisk&) = delete;

  Roots roots() const;
  const std::vector<std::string>& paths() const { return m_paths; }

 private:
  std::filesystem::path m_folder;
  std::vector<std::string> m_paths;
};

/// Scans that machine.
class Scanner {
 public:
  explicit Scanner(const JobFolderOnDisk& folder);
  ~Scanner();

  /// With an empty file cache.
  Jobs coldScan();
  /// With the cache of the previous scan.
  Jobs rescan();

 private:
  struct Parts;

  Foundation m_foundation;
  std::unique_ptr<Parts> m_parts;
};

}  // namespace mirvel::bench
