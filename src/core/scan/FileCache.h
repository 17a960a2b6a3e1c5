#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>

#include "core/catalogue/JobFile.h"

namespace mirvel {

/// The files that were read lately. An entry is never invalidated: a changed file has another key. For one
/// thread at a time.
class FileCache {
 public:
  static constexpr std::size_t countLimit = 700;

  /// The key of a file that was last modified then, in seconds and nanoseconds since 1970.
  static std::string key(const std::string& path, std::int64_t seconds, long nanoseconds);

  bool isEmpty() const { return m_entries.empty(); }
  /// Null: not there. The file stays until the next `put`.
  const JobFile* find(const std::string& key);
  /// Beyond the limit, what wasn't asked for the longest goes.
  void put(const std::string& key, JobFile file);

 private:
  struct Entry {
    std::string key;
    JobFile file;
  };

  std::list<Entry> m_entries;  // what was asked for last stands first
  std::unordered_map<std::string_view, std::list<Entry>::iterator> m_places;
};

}  // namespace mirvel
