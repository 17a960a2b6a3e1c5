#include "core/propertylist/RepeatedKeys.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

namespace mirvel::plist {

namespace {

bool hasRepeatedKey(std::span<const Node> entries) {
  // Dictionaries of job files are small: comparing each key with each is quickest there.
  constexpr std::size_t manyNodes = 32;
  if (entries.size() <= manyNodes) {
    for (std::size_t i = 0; i < entries.size(); i += 2) {
      for (std::size_t j = 0; j < i; j += 2) {
        if (entries[i].isSameText(entries[j])) return true;
      }
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
  std::unordered_map<std::string_view, std::size_t> places;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < entries.size(); i += 2) {
    const std::string_view key = *entries[i].string();
    const auto [at, isNew] = places.try_emplace(key, kept);
    if (isNew) {
      entries[kept] = entries[i];
      entries[kept + 1] = entries[i + 1];
      kept += 2;
    } else {
      report(key);
      if (repeated == Repeated::LastWins) entries[at->second + 1] = entries[i + 1];
    }
  }
  return kept / 2;
}

}  // namespace mirvel::plist
