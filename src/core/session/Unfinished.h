#pragma once

#include <map>
#include <string>
#include <vector>

#include "core/editor/GridTable.h"
#include "core/schedule/RuleRow.h"

namespace mirvel {

/// What was entered in the editor but can't be in a job file as it stands. It stays in its fields, while the record
/// keeps what it had, and it is undone and redone like everything else.
struct Unfinished {
  std::vector<Scheduled::RuleRow> rules = {};                       ///< empty: the record has them
  std::map<std::string, std::vector<GridTable::Item>> tables = {};  ///< by their keys; likewise

  bool isEmpty() const { return rules.empty() && tables.empty(); }
};

}  // namespace mirvel
