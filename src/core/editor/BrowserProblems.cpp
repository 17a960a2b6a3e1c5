#include "core/editor/BrowserProblems.h"

#include <algorithm>
#include <set>
#include <string_view>

#include "core/editor/BrowserLeaf.h"
#include "core/editor/BrowserTexts.h"
#include "core/editor/EditorTexts.h"
#include "core/locale/Localize.h"

namespace mirvel::BrowserProblems {

namespace {

using Items = std::vector<BrowserItem>;

/// Why an item by itself can't be saved.
std::optional<std::string> problemOf(const BrowserItem& item, bool isRepeated, const BrowserLevel& level,
                                     const Localize& localize) {
  if (item.isNew) return std::nullopt;
  if (!level.isArray && item.name.empty() && !item.mayBeUnnamed) return BrowserTexts(localize).enterAName();
  if (isRepeated) return EditorTexts(localize).moreThanOneRowIsCalled(item.name);
  return BrowserLeaf::problem(item, BrowserLeaf::formOf(item, level), localize);
}

/// The names that more than one item has.
std::set<std::string_view> repeatedNames(const Items& items, const BrowserLevel& level) {
  std::set<std::string_view> seen;
  std::set<std::string_view> repeated;
  if (level.isArray) return repeated;
  for (const BrowserItem& item : items) {
    if (!item.isNew && !seen.insert(item.name).second) repeated.insert(item.name);
  }
  return repeated;
}

}  // namespace

std::optional<std::string> at(const Items& siblings, std::size_t row, const BrowserLevel& level,
                              const Localize& localize) {
  const BrowserItem& item = siblings[row];
  const auto isSameName = [&item](const BrowserItem& other) { return !other.isNew && other.name == item.name; };
  const bool isRepeated = !level.isArray && std::count_if(siblings.begin(), siblings.end(), isSameName) > 1;
  return problemOf(item, isRepeated, level, localize);
}

std::optional<std::string> first(const Items& items, const BrowserLevel& level, const Localize& localize,
                                 std::vector<std::size_t>& path) {
  const auto repeated = repeatedNames(items, level);
  for (std::size_t row = 0; row < items.size(); ++row) {
    path.push_back(row);
    const BrowserItem& item = items[row];
    auto problem = problemOf(item, repeated.contains(item.name), level, localize);
    if (!problem && !item.isNew) problem = first(item.children, level.of(item), localize, path);
    if (problem) return problem;
    path.pop_back();
  }
  return std::nullopt;
}

}  // namespace mirvel::BrowserProblems
