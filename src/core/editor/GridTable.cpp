#include "core/editor/GridTable.h"

namespace mirvel::GridTable {

std::optional<launchd::StringMap<bool>> dictionaryOf(const std::vector<Item>& rows) {
  launchd::StringMap<bool> result;
  for (const Item& row : rows) {
    if (!row.string.empty()) result.insert_or_assign(row.string, row.bool_);
  }
  return result.empty() ? std::nullopt : std::optional(std::move(result));
}

std::optional<std::vector<std::string>> arrayOf(const std::vector<Item>& rows) {
  std::vector<std::string> result;
  for (const Item& row : rows) {
    if (!row.string.empty()) result.push_back(row.string);
  }
  return result.empty() ? std::nullopt : std::optional(std::move(result));
}

}  // namespace mirvel::GridTable
