#pragma once

#include <cstddef>
#include <unordered_map>

#include "core/catalogue/JobFile.h"
#include "core/catalogue/JobFolder.h"

namespace mirvel {

/// The parsed job files of the last scan, by their stamps: a file that was written or replaced since isn't found.
/// For one thread at a time.
class FileCache {
 public:
  /// The maximum number of entries, enough for the job folders of most machines.
  static constexpr std::size_t countLimit = 700;

  bool isEmpty() const { return m_entries.empty(); }
  /// Null if the cache doesn't have the file. The result is valid until `dropUnused`.
  const JobFile* find(const JobFolder::Stamp& stamp);
  /// Has no effect if the cache is full.
  void put(const JobFolder::Stamp& stamp, JobFile file);
  /// Removes all files that were neither put nor found since the previous call. Called at the end of a scan.
  void dropUnused();

 private:
  struct Hash {
    std::size_t operator()(const JobFolder::Stamp& stamp) const noexcept;
  };
  struct Entry {
    JobFile file;
    bool isUsed = true;
  };

  std::unordered_map<JobFolder::Stamp, Entry, Hash> m_entries;
};

}  // namespace mirvel
