#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "core/schedule/RuleRow.h"

namespace mirvel {

/// A row of a table in the editor: a check box, where the table has one, and the text of each column.
struct TableRow {
  bool isOn = false;
  std::vector<std::string> cells = {};

  bool operator==(const TableRow&) const = default;
};

/// Input of the editor that can't be in a job file as it stands. It stays in its fields while the record keeps its
/// previous values, and is undone and redone together with the record.
struct Unfinished {
  std::vector<Scheduled::RuleRow> rules = {};                             ///< empty: the record's rules are shown
  std::map<std::string, std::vector<TableRow>, std::less<>> tables = {};  ///< by key; absent: the record's rows
  std::map<std::string, std::string, std::less<>> texts = {};             ///< of single fields, likewise

  bool isEmpty() const { return rules.empty() && tables.empty() && texts.empty(); }
};

}  // namespace mirvel
