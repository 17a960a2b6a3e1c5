#pragma once

#include <QString>
#include <cstddef>
#include <string>
#include <string_view>

namespace mirvel::ui {

/// The bytes of a script as characters for a `QTextDocument`, and back without loss. Lines that end otherwise than
/// `lineEnd` says don't end there, and a byte that isn't UTF-8 or would be something else in a document is a lone
/// surrogate, from U+DC00 to U+DCFF.
QString plainCharacters(std::string_view bytes, std::string_view lineEnd);

/// `characters` are the raw text of such a document. A line that the user ended in any way ends with `lineEnd`.
std::string bytesOf(QStringView characters, std::string_view lineEnd);

/// Whether a place in a text splits a character of UTF-8.
bool isWithinCharacter(std::string_view bytes, std::size_t place);

}  // namespace mirvel::ui
