#include "core/scan/ReadAhead.h"

#include <algorithm>

namespace mirvel {

const Result<ReadAhead::Contents>& ReadAhead::read(std::size_t index) {
  if (index >= m_first + m_contents.size()) fill(index);
  return m_contents[index - m_first];
}

void ReadAhead::fill(std::size_t first) {
  m_first = first;
  m_contents.clear();
  const std::size_t end = std::min(first + atOnce, m_entries.size());
  for (std::size_t i = first; i < end; ++i) {
    const auto& entry = m_entries[i];
    m_contents.push_back(entry.isRegular ? readEntry(entry.name, m_rooms[i - first]) : Contents{});
  }
}

Result<ReadAhead::Contents> ReadAhead::readEntry(const std::string& name, std::string& room) const {
  Contents contents;
  const auto bytes = m_folder.readListed(name, room, m_withStamps ? &contents.stamp : nullptr);
  if (!bytes) return bytes.error();
  contents.bytes = *bytes;
  return contents;
}

}  // namespace mirvel
