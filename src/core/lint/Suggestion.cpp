#include "core/lint/Suggestion.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "core/text/Ascii.h"

namespace mirvel::lint {

namespace {

constexpr std::size_t longestName = 64;  // bounds the work for hostile files; no key is nearly as long

}  // namespace

std::size_t editDistance(std::string_view a, std::string_view b) {
  const auto same = [&](std::size_t i, std::size_t j) { return Ascii::lower(a[i]) == Ascii::lower(b[j]); };
  // Distances between prefixes of both texts, computed row by row; a transposition refers to the row before the last.
  std::vector<std::size_t> beforeLast(b.size() + 1);
  std::vector<std::size_t> last(b.size() + 1);
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) last[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same(i - 1, j - 1) ? 0U : 1U)});
      const bool isSwap = i > 1 && j > 1 && same(i - 1, j - 2) && same(i - 2, j - 1);
      if (isSwap) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
    }
    std::swap(beforeLast, last);
    std::swap(last, row);
  }
  return last[b.size()];
}

std::optional<std::string_view> suggestion(std::string_view name, std::span<const std::string_view> candidates) {
  if (name.size() > longestName || std::find(candidates.begin(), candidates.end(), name) != candidates.end()) {
    return std::nullopt;
  }
  std::size_t closest = std::max<std::size_t>(name.size() / 5, 1) + 1;
  std::optional<std::string_view> result;
  for (const std::string_view candidate : candidates) {
    const std::size_t longer = std::max(name.size(), candidate.size());
    const std::size_t shorter = std::min(name.size(), candidate.size());
    if (longer - shorter >= closest) continue;  // a lower bound of the distance
    const std::size_t distance = editDistance(name, candidate);
    if (distance >= closest) continue;
    closest = distance;
    result = candidate;
  }
  return result;
}

}  // namespace mirvel::lint
