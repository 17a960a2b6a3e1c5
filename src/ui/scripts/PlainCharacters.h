#pragma once

#include <QString>
#include <cstddef>
#include <string>
#include <string_view>

namespace mirvel::ui {

/// Converts the bytes of a script to characters for a `QTextDocument`, without loss. Only `lineEnd` ends a line. Bytes
/// that aren't UTF-8 or would have a meaning of their own in a document become lone surrogates from U+DC00 to U+DCFF.
QString plainCharacters(std::string_view bytes, std::string_view lineEnd);

/// The inverse of `plainCharacters`, for the raw text of such a document. Lines that the user has added end with
/// `lineEnd`.
std::string bytesOf(QStringView characters, std::string_view lineEnd);

/// Whether an offset in UTF-8 text is inside of a character.
bool isWithinCharacter(std::string_view bytes, std::size_t place);

}  // namespace mirvel::ui
