#include "core/scan/ReadAhead.h"

#include <algorithm>
#include <span>

namespace mirvel {

const Result<ReadAhead::Contents>& ReadAhead::read(std::size_t index) {
  if (index >= m_first + m_contents.size()) fill(index);
  return m_contents[index - m_first];
}

void ReadAhead::fill(std::size_t first) {
  m_first = first;
  m_used = 0;
  m_contents.clear();
  const std::size_t end = std::min(first + batchSize, m_entries.size());
  for (std::size_t i = first; i < end; ++i) {
    const auto& entry = m_entries[i];
    m_contents.push_back(entry.isRegular ? readEntry(entry.name, m_overflows.at(i - first)) : Contents{});
  }
}

Result<ReadAhead::Contents> ReadAhead::readEntry(const std::string& name, std::string& overflow) {
  Contents contents;
  const std::span room(m_room.get() + m_used, roomSize - m_used);
  const auto bytes = m_folder.readListed(name, room, overflow, m_withStamps ? &contents.stamp : nullptr);
  if (!bytes) return bytes.error();
  if (bytes->data() == room.data()) m_used += bytes->size();
  contents.bytes = *bytes;
  return contents;
}

}  // namespace mirvel
