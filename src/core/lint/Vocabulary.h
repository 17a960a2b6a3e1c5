#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

/// The known keys of job files.
namespace mirvel::lint {

/// All known top-level keys: those of the record, and others that launchd or its tools interpret.
std::span<const std::string_view> topLevelKeys();

/// The fixed keys of nested dictionaries below one top-level key.
struct NestedKeys {
  std::string_view owner;  ///< the top-level key
  std::size_t depth;       ///< 1 for its own dictionary; 2 for the dictionaries in that one, whose names are arbitrary
  std::vector<std::string_view> keys;  ///< in the order of the record's coding keys
};

/// One element for each top-level key with such dictionaries.
std::span<const NestedKeys> nestedKeys();
/// The element of a top-level key; null if it has none.
const NestedKeys* nestedKeysOf(std::string_view owner);

}  // namespace mirvel::lint
