#include "core/propertylist/Positions.h"

#include <algorithm>

namespace mirvel::plist {

Place placeOf(std::string_view text, std::size_t offset) {
  const std::string_view before = text.substr(0, offset);
  const auto lines = static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
  const std::size_t lineStart = before.rfind('\n') + 1;  // npos + 1 is 0
  return {.line = lines + 1, .column = before.size() - lineStart + 1};
}

Place PlaceCursor::placeOf(std::size_t offset) {
  if (offset < m_offset) *this = PlaceCursor(m_text);
  for (; m_offset < offset; ++m_offset) {
    if (m_text[m_offset] != '\n') continue;
    ++m_lines;
    m_lineStart = m_offset + 1;
  }
  return {.line = m_lines + 1, .column = offset - m_lineStart + 1};
}

std::string childPath(const std::string& parent, std::string_view key) {
  return parent.empty() ? std::string(key) : parent + '.' + std::string(key);
}

std::string childPath(const std::string& parent, std::size_t index) {
  return parent + '[' + std::to_string(index) + ']';
}

std::optional<Positions::Spot> Positions::find(const std::string& path) const {
  const auto at = m_spots.find(path);
  if (at == m_spots.end()) return std::nullopt;
  return at->second;
}

}  // namespace mirvel::plist
