#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "core/propertylist/Value.h"

namespace mirvel {

/// An entry of a nested dictionary in the editor, such as a socket or one of its keys. A tree of items represents a
/// property list without loss: what the editor can't change is kept as it is.
struct BrowserItem {
  /// The types of items, in the order of `Content`.
  enum class Type {
    Dictionary,
    Array,  ///< of dictionaries; other arrays are `Strings` or `Kept`
    Boolean,
    String,
    Integer,
    Real,
    Strings,  ///< an array of strings
    Kept,     ///< a value of any other type, which can only be removed
  };
  struct Entries {
    bool operator==(const Entries&) const = default;
  };
  struct Elements {
    bool operator==(const Elements&) const = default;
  };
  using Content = std::variant<Entries, Elements, bool, std::string, std::int64_t, double, std::vector<std::string>,
                               propertylist::Value>;

  Type type() const { return static_cast<Type>(content.index()); }
  /// Whether the item has a column of its own.
  bool isContainer() const { return type() == Type::Dictionary || type() == Type::Array; }

  std::string name;                        ///< the key in the file; unused for the elements of an array
  Content content = {};                    ///< of a leaf its value, which doesn't count while `entered` is set
  std::vector<BrowserItem> children = {};  ///< the entries of a dictionary or the elements of an array
  /// The text that was entered for the value if it isn't one, such as "5x" for an integer. Empty if no value has been
  /// entered yet.
  std::optional<std::string> entered = {};
  bool isNew = false;         ///< added, but neither named nor changed so far: not part of the list yet
  bool mayBeUnnamed = false;  ///< the file has an empty key here
  bool mayBeEmpty = false;    ///< the file has an empty string or array here
  bool isTypeOpen = false;    ///< added here: the entered text decides between string and integer
  std::uint64_t id = 0;       ///< unique within the tree, and kept when it is filled again

  bool operator==(const BrowserItem&) const = default;
};

}  // namespace mirvel
