#pragma once

#include <string>

#include "core/base/Result.h"
#include "core/propertylist/Value.h"

namespace mirvel::propertylist {

/// The XML form in UTF-8, byte for byte as the macOS writer produces it: tabs, sorted keys, `<`, `>` and `&` escaped,
/// reals like printf's `%.17g`, data in lines of at most 76 columns.
///
/// `WrongType` if the value contains a set, which has no XML form. Not everything survives reading it back: dates lose
/// fractions of a second, a dictionary with the single key `CF$UID` and a number becomes a UID, and ill-formed UTF-8,
/// which is written as it is, makes the list unreadable. Recurses as deep as the value is nested.
///
///     writeXml(Array{true, 5});  // <?xml ...>\n<!DOCTYPE ...>\n<plist version="1.0">\n<array>\n\t<true/>\n ...
Result<std::string> writeXml(const Value& value);

/// The binary form ("bplist00"). Never fails. Equal strings, keys included, are stored once; other equal values aren't.
/// Ill-formed UTF-8 is replaced by U+FFFD. Fractions of a second and sets are kept.
std::string writeBinary(const Value& value);

}  // namespace mirvel::propertylist
