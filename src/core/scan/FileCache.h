#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>

#include "core/catalogue/JobFile.h"

namespace mirvel {

/// A cache of decoded job files, from which the least recently used entry is evicted. Entries are never invalidated: a
/// changed file has another key. Not thread-safe.
class FileCache {
 public:
  /// The maximum number of entries, enough for the job folders of most machines.
  static constexpr std::size_t countLimit = 700;

  /// The key of a file with this path and time of last modification, in seconds and nanoseconds since 1970.
  static std::string key(const std::string& path, std::int64_t seconds, long nanoseconds);

  bool isEmpty() const { return m_entries.empty(); }
  /// Null if there is no entry. The pointer is valid until the next `put`.
  const JobFile* find(const std::string& key);
  /// Adds an entry, or replaces the one with the same key. Beyond the limit, evicts the least recently used one.
  void put(const std::string& key, JobFile file);

 private:
  struct Entry {
    std::string key;
    JobFile file;
  };

  std::list<Entry> m_entries;                                                // the most recently used one first
  std::unordered_map<std::string_view, std::list<Entry>::iterator> m_byKey;  // refers to the keys in the entries
};

}  // namespace mirvel
