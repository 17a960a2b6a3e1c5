#include "core/propertylist/DictionaryBuilder.h"

#include <algorithm>

namespace mirvel::plist {

namespace {

/// The first eight bytes as a number that sorts as `Dictionary::keyLess` sorts the keys, where it differs.
std::uint64_t prefixOf(std::string_view key) {
  std::uint64_t prefix = 0;
  for (std::size_t i = 0; i < 8; ++i) {
    const std::uint64_t byte = i < key.size() ? Dictionary::utf16Rank(static_cast<unsigned char>(key[i])) : 0;
    prefix = prefix << 8U | byte;
  }
  return prefix;
}

}  // namespace

void DictionaryBuilder::rank(std::span<const ReadKey> keys) {
  m_order.clear();
  for (std::size_t i = 0; i < keys.size(); ++i) m_order.push_back({prefixOf(keys[i].text), i});
  const auto before = [&](const Ranked& a, const Ranked& b) {
    if (a.prefix != b.prefix) return a.prefix < b.prefix;
    const std::string_view left = keys[a.index].text;
    const std::string_view right = keys[b.index].text;
    return left == right ? a.index < b.index : Dictionary::keyLess(left, right);
  };
  if (!std::is_sorted(m_order.begin(), m_order.end(), before)) std::sort(m_order.begin(), m_order.end(), before);
}

/// Of a run of equal keys, which lie in the order of reading, leaves the one that wins.
void DictionaryBuilder::dropRepeated(std::span<const ReadKey> keys) {
  m_repeatedKeys.clear();
  std::size_t kept = 0;
  for (const Ranked& next : m_order) {
    const bool isRepeated = kept > 0 && keys[m_order[kept - 1].index].text == keys[next.index].text;
    if (isRepeated) m_repeatedKeys.push_back(keys[next.index]);
    if (!isRepeated) m_order[kept++] = next;
    if (isRepeated && m_repeated == Repeated::LastWins) m_order[kept - 1] = next;
  }
  m_order.resize(kept);
}

Dictionary DictionaryBuilder::build(std::span<const ReadKey> keys, std::span<Value> values) {
  rank(keys);
  dropRepeated(keys);
  std::vector<Dictionary::Entry> entries;
  entries.reserve(m_order.size());
  for (const Ranked& ranked : m_order) {
    entries.emplace_back(keys[ranked.index].text, std::move(values[ranked.index]));
  }
  return Dictionary::fromSorted(std::move(entries));
}

}  // namespace mirvel::plist
