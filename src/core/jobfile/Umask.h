#pragma once

#include <cstdint>
#include <optional>

#include "core/propertylist/Node.h"
#include "core/propertylist/Value.h"

namespace mirvel::jobfile {

class Place;

/// The file mode creation mask of the job, as a plain number: 18 is octal 022. Absent where the file held nothing that
/// could be read.
struct Umask {
  std::optional<std::int64_t> int_ = {};

  bool operator==(const Umask&) const = default;
};

/// Never fails. A text is octal if it starts with 0, else decimal.
void decode(const propertylist::Node& node, const Place& place, Umask& result);
/// The integer form, whatever the file held; nothing for an absent number.
std::optional<propertylist::Value> encode(const Umask& umask);

}  // namespace mirvel::jobfile
