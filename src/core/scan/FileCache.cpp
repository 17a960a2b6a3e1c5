#include "core/scan/FileCache.h"

#include <utility>

namespace mirvel {

std::size_t FileCache::Hash::operator()(const JobFolder::Stamp& stamp) const noexcept {
  // Distinguishes nearly all files by itself; the times only matter for one that was replaced.
  return static_cast<std::size_t>(stamp.inode);
}

const JobFile* FileCache::find(const JobFolder::Stamp& stamp) {
  const auto found = m_entries.find(stamp);
  if (found == m_entries.end()) return nullptr;
  found->second.isUsed = true;
  return &found->second.file;
}

void FileCache::put(const JobFolder::Stamp& stamp, JobFile file) {
  if (m_entries.empty()) m_entries.reserve(countLimit);
  if (m_entries.size() < countLimit) m_entries.try_emplace(stamp, Entry{.file = std::move(file)});
}

void FileCache::dropUnused() {
  std::erase_if(m_entries, [](const auto& entry) { return !entry.second.isUsed; });
  for (auto& [stamp, entry] : m_entries) entry.isUsed = false;
}

}  // namespace mirvel
