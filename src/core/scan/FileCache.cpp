#include "core/scan/FileCache.h"

#include <array>
#include <charconv>
#include <utility>

namespace mirvel {

std::string FileCache::key(const std::string& path, std::int64_t seconds, long nanoseconds) {
  // A double resolves about 100 ns here, which distinguishes all but artificial modification times.
  constexpr std::int64_t from1970To2001 = 978'307'200;
  const double interval = static_cast<double>(seconds - from1970To2001) + static_cast<double>(nanoseconds) / 1e9;
  std::array<char, 32> text;
  const auto end = std::to_chars(text.data(), text.data() + text.size(), interval).ptr;
  return path + std::string(text.data(), end);
}

const JobFile* FileCache::find(const std::string& key) {
  const auto found = m_byKey.find(key);
  if (found == m_byKey.end()) return nullptr;
  m_entries.splice(m_entries.begin(), m_entries, found->second);
  return &found->second->file;
}

void FileCache::put(const std::string& key, JobFile file) {
  const auto existing = m_byKey.find(key);
  if (existing != m_byKey.end()) {
    existing->second->file = std::move(file);
    return;
  }
  m_entries.push_front({key, std::move(file)});
  m_byKey.emplace(m_entries.front().key, m_entries.begin());
  if (m_entries.size() > countLimit) {
    m_byKey.erase(m_entries.back().key);
    m_entries.pop_back();
  }
}

}  // namespace mirvel
