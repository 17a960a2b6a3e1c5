#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/plist/StringMap.h"

namespace mirvel {

/// The rules of a small table with add and delete buttons.
namespace GridTable {

/// What is in a row; a table without check boxes leaves `bool_` alone.
struct Item {
  bool bool_ = false;
  std::string string;

  bool operator==(const Item&) const = default;
};

/// The rows as a dictionary, without those that have no text; of like texts the last wins. None if nothing is left.
std::optional<launchd::StringMap<bool>> dictionaryOf(const std::vector<Item>& rows);
/// The texts of the rows in their order, without empty ones. None if nothing is left.
std::optional<std::vector<std::string>> arrayOf(const std::vector<Item>& rows);

}  // namespace GridTable

/// Hears of each change of such a table.
class GridTableDelegate {
 public:
  GridTableDelegate() = default;
  virtual ~GridTableDelegate() = default;
  GridTableDelegate(const GridTableDelegate&) = delete;
  GridTableDelegate& operator=(const GridTableDelegate&) = delete;

  /// `key` names the table.
  virtual void gridTableChanged(const std::string& key, const std::vector<GridTable::Item>& rows) = 0;
};

}  // namespace mirvel
