#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/propertylist/Value.h"

namespace mirvel::propertylist {

/// Whether the date is finite and its year is within about ±2^31, the range in which macOS reads dates. Both readers
/// reject other dates.
bool isReadable(Date date);

/// The text of a <date>: `2004-10-26T10:33:33Z`, in UTC and the proleptic Gregorian calendar, with seconds rounded
/// down. Years have at least four characters, including the minus sign of those before year 0. The date must be one for
/// which `isReadable` is true.
std::string dateText(Date date);

/// Property lists count time from the beginning of 2001, the rest of the program from that of 1970, both in seconds.
Date dateSince1970(double seconds);
double secondsSince1970(Date date);

struct ParsedDate {
  Date date;
  bool isInRange = true;  ///< false: a field such as month 13 or second 60 was carried over to the next larger one
};

/// Parses the text of a <date>: a year of any number of digits, up to 2147483647 and with a minus sign if negative,
/// then exactly `-MM-DDTHH:MM:SSZ`. nullopt for anything else, white space included. Fields that are out of range count
/// on, as on macOS; month 0 is January.
///
///     parseDate("2002-13-01T00:00:00Z")  // 1 January 2003, not in range
std::optional<ParsedDate> parseDate(std::string_view text);

}  // namespace mirvel::propertylist
