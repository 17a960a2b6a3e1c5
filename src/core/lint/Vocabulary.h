#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The keys that job files may hold.
namespace mirvel::lint {

/// All that stand at the top of a file: those of the record, and others that launchd or its tools read.
std::span<const std::string_view> topLevelKeys();

/// The keys that the dictionaries of one top-level key may hold, where they aren't the file's to choose.
struct NestedKeys {
  std::string_view owner;              ///< the top-level key
  std::size_t depth;                   ///< 1: its own dictionary; 2: the dictionaries in it
  std::vector<std::string_view> keys;  ///< in the order of the record
};

/// One entry for each top-level key that has such dictionaries.
std::span<const NestedKeys> nestedKeys();
/// The one of that owner; null: it has none.
const NestedKeys* nestedKeysOf(std::string_view owner);

}  // namespace mirvel::lint
