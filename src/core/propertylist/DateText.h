#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/propertylist/Value.h"

namespace mirvel::propertylist {

/// Dates lie within the years that a 32-bit number holds, as on macOS.
bool isReadable(Date date);

/// `2004-10-26T10:33:33Z`, in UTC by the Gregorian calendar, seconds rounded down. Years before 0 have a minus.
std::string dateText(Date date);

struct ParsedDate {
  Date date;
  bool isInRange = true;  ///< false: a field such as month 13 or second 60 was carried over into the next one
};

/// The moment in the text of a <date>: a year of any number of digits, then exactly `-MM-DDTHH:MM:SSZ`.
std::optional<ParsedDate> parseDate(std::string_view text);

}  // namespace mirvel::propertylist
