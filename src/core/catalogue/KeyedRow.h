#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "core/catalogue/Job.h"

namespace mirvel {

/// A job's place in a list, for sorting by a collator's key: small, and mostly compared by the key's first bytes alone.
class KeyedRow {
 public:
  /// The key outlives the row.
  KeyedRow(std::string_view key, std::size_t index) : m_key(key), m_index(index) {
    for (std::size_t i = 0; i < sizeof m_prefix; ++i) {
      m_prefix = m_prefix << 8U | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0U);
    }
  }

  std::size_t index() const { return m_index; }
  bool operator<(const KeyedRow& other) const {
    return m_prefix != other.m_prefix ? m_prefix < other.m_prefix : m_key < other.m_key;
  }
  bool isSame(const KeyedRow& other) const { return m_prefix == other.m_prefix && m_key == other.m_key; }

 private:
  std::uint64_t m_prefix = 0;
  std::string_view m_key;
  std::size_t m_index;
};

/// The jobs in the order of the rows.
inline Jobs inOrder(const std::vector<KeyedRow>& rows, const Jobs& jobs) {
  Jobs result;
  result.reserve(rows.size());
  for (const KeyedRow& row : rows) result.push_back(jobs[row.index()]);
  return result;
}

}  // namespace mirvel
