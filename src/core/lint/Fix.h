#pragma once

#include <optional>
#include <string>
#include <variant>

#include "core/jobfile/OpaqueValues.h"
#include "core/lint/Clause.h"
#include "core/propertylist/Value.h"

namespace mirvel::lint {

/// A change of the file that resolves a finding. Only offered where it is certain what was meant.
struct Fix {
  struct Remove {
    bool operator==(const Remove&) const = default;
  };
  /// Renames a key and keeps its value.
  struct Rename {
    std::string to;

    bool operator==(const Rename&) const = default;
  };
  struct Replace {
    propertylist::Value from;
    propertylist::Value to;

    bool operator==(const Replace&) const = default;
  };

  Clause title;                     ///< of a button, such as "Remove"
  jobfile::OpaqueValue::Path path;  ///< of the value to change
  std::variant<Remove, Rename, Replace> change;

  static Fix remove(jobfile::OpaqueValue::Path path);
  static Fix rename(jobfile::OpaqueValue::Path path, std::string to);
  /// `shown` is the new value in the title.
  static Fix replace(jobfile::OpaqueValue::Path path, propertylist::Value from, propertylist::Value to,
                     std::string shown);

  bool operator==(const Fix&) const = default;
};

/// The file with the fix applied; everything else is unchanged. Null if the file isn't as it was when the fix was
/// found: there is no value at the path, it isn't the value to be replaced, or there is a key of the new name.
std::optional<propertylist::Dictionary> mended(const propertylist::Dictionary& file, const Fix& fix);

}  // namespace mirvel::lint
