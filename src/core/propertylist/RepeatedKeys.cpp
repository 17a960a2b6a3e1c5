#include "core/propertylist/RepeatedKeys.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace mirvel::propertylist {

namespace {

/// A hash with one of 64 bits set, cheap and different for most different keys.
std::uint64_t hashBit(std::string_view key) {
  if (key.empty()) return 1;
  const auto first = static_cast<unsigned char>(key.front());
  const auto last = static_cast<unsigned char>(key.back());
  return std::uint64_t{1} << ((key.size() * 7 + std::size_t{first} * 5 + last) & 63U);
}

bool hasRepeatedKey(std::span<const Node> entries) {
  // Most dictionaries are small: only keys with the same bit are compared, and nothing is allocated.
  constexpr std::size_t manyNodes = 64;
  if (entries.size() <= manyNodes) {
    std::uint64_t seen = 0;
    for (std::size_t i = 0; i < entries.size(); i += 2) {
      const std::uint64_t bit = hashBit(*entries[i].string());
      for (std::size_t j = 0; (seen & bit) != 0 && j < i; j += 2) {
        if (entries[i].isSameText(entries[j])) return true;
      }
      seen |= bit;
    }
    return false;
  }
  std::vector<std::string_view> keys;
  keys.reserve(entries.size() / 2);
  for (std::size_t i = 0; i < entries.size(); i += 2) keys.push_back(*entries[i].string());
  std::sort(keys.begin(), keys.end());
  return std::adjacent_find(keys.begin(), keys.end()) != keys.end();
}

}  // namespace

std::size_t dropRepeatedKeys(std::span<Node> entries, Repeated repeated,
                             const std::function<void(std::string_view)>& report) {
  if (!hasRepeatedKey(entries)) return entries.size() / 2;
  const auto key = [&](std::size_t entry) { return *entries[2 * entry].string(); };
  // Sorted rather than hashed: no choice of keys can make it slow.
  std::vector<std::size_t> byKey(entries.size() / 2);
  std::iota(byKey.begin(), byKey.end(), std::size_t{0});
  std::stable_sort(byKey.begin(), byKey.end(), [&](std::size_t a, std::size_t b) { return key(a) < key(b); });
  std::vector<bool> isRepeated(byKey.size());
  std::size_t first = byKey.front();
  for (const std::size_t entry : std::span(byKey).subspan(1)) {
    if (key(entry) != key(first)) {
      first = entry;
      continue;
    }
    isRepeated[entry] = true;
    if (repeated == Repeated::LastWins) entries[2 * first + 1] = entries[2 * entry + 1];
  }
  std::size_t kept = 0;
  for (std::size_t entry = 0; entry < isRepeated.size(); ++entry) {
    if (isRepeated[entry]) {
      report(key(entry));
    } else {
      entries[2 * kept] = entries[2 * entry];
      entries[2 * kept + 1] = entries[2 * entry + 1];
      ++kept;
    }
  }
  return kept;
}

}  // namespace mirvel::propertylist
