#include "core/jobfile/Place.h"

namespace mirvel::jobfile {

namespace {
constexpr std::size_t longestKey = 512;
}

std::string Place::text() const {
  if (!m_above) return {};
  std::string result = m_above->text();
  if (!m_key.data()) return result.append("[").append(std::to_string(m_index)).append("]");
  if (!result.empty()) result += '.';
  return result.append(m_key.substr(0, longestKey));
}

}  // namespace mirvel::jobfile
