#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "core/editor/ValueTexts.h"
#include "core/jobfile/Plist.h"
#include "core/propertylist/Value.h"
#include "core/session/Editing.h"

namespace mirvel {

/// The value of a field. `std::monostate` means that the key is absent, as distinct from false, 0 and an empty text.
using FieldValue = std::variant<std::monostate, bool, std::int64_t, std::string, std::vector<TableRow>>;

/// The access to a key of the record. None of the functions is null.
struct FieldAccess {
  /// Whether the record has the key, whatever its value.
  bool (*isSet)(const jobfile::Plist& plist) = nullptr;
  void (*remove)(jobfile::Plist& plist) = nullptr;
  /// The value for the read-only view; null if there is nothing to show.
  std::optional<propertylist::Value> (*display)(const jobfile::Plist& plist, const ValueTexts& texts) = nullptr;
  /// The value for a control. Absent for keys of types that no control shows.
  FieldValue (*read)(const jobfile::Plist& plist) = nullptr;
  /// Writes a value of the type that `read` returns, or removes the key if the value is absent. A value of another type
  /// changes nothing. A list or dictionary without rows is removed, unless the file has it empty, or with values that
  /// no row shows.
  void (*write)(jobfile::Plist& plist, const FieldValue& value) = nullptr;
};

}  // namespace mirvel
