#include "core/plist/Place.h"

namespace mirvel::launchd {

std::string Place::text() const {
  if (!m_above) return {};
  std::string result = m_above->text();
  if (!m_key.data()) return result + '[' + std::to_string(m_index) + ']';
  if (!result.empty()) result += '.';
  result += m_key;
  return result;
}

}  // namespace mirvel::launchd
