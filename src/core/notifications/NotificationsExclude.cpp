#include "core/notifications/NotificationsExclude.h"

#include <algorithm>
#include <utility>

namespace mirvel {

void NotificationsExclude::reload() {
  auto old = std::exchange(m_rows, {});
  for (std::string& prefix : m_exceptions.prefixes()) {
    const auto same = std::find_if(old.begin(), old.end(), [&](const Row& row) { return row.prefix == prefix; });
    m_rows.push_back({.id = same != old.end() ? same->id : ++m_lastId, .prefix = std::move(prefix)});
    if (same != old.end()) old.erase(same);
  }
  for (Row& row : old) {
    if (row.prefix.empty()) m_rows.push_back(std::move(row));
  }
}

std::int64_t NotificationsExclude::add() {
  m_rows.push_back({.id = ++m_lastId});
  return m_lastId;
}

bool NotificationsExclude::setPrefix(std::int64_t id, const std::string& prefix) {
  const std::size_t index = indexOf(id);
  if (index == m_rows.size() || m_rows[index].prefix == prefix) return false;
  const std::size_t occurrence = occurrenceOf(index);
  const std::string old = std::exchange(m_rows[index].prefix, prefix);
  (void)m_exceptions.replacePrefix(old, occurrence, prefix);  // the store reports a failure
  reload();
  return true;
}

bool NotificationsExclude::remove(std::int64_t id) {
  const std::size_t index = indexOf(id);
  if (index == m_rows.size()) return false;
  const bool isChange = setPrefix(id, {});
  std::erase_if(m_rows, [&](const Row& row) { return row.id == id; });
  return isChange;
}

/// The number of rows if there is no such row.
std::size_t NotificationsExclude::indexOf(std::int64_t id) const {
  const auto found = std::find_if(m_rows.begin(), m_rows.end(), [&](const Row& row) { return row.id == id; });
  return static_cast<std::size_t>(found - m_rows.begin());
}

/// The number of earlier rows with the same text.
std::size_t NotificationsExclude::occurrenceOf(std::size_t index) const {
  const auto end = m_rows.begin() + static_cast<std::ptrdiff_t>(index);
  return static_cast<std::size_t>(
      std::count_if(m_rows.begin(), end, [&](const Row& row) { return row.prefix == m_rows[index].prefix; }));
}

}  // namespace mirvel
