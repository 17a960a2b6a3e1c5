#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "core/documents/TextEncoding.h"

namespace mirvel::Text {

/// The encodings in which bytes that aren't UTF-8 could be text, the most plausible first. None has a byte order mark.
///
/// Each candidate is judged by what the bytes decode to: whether there is a language whose alphabet has the letters,
/// whether words are of one script and capitals where words have them, and whether there are control characters.
/// Equal candidates are ordered by ICU's detector, by the language of the user, and by how common they are. Only the
/// lines with bytes above 0x7F count, and of these the first 64 KiB.
///
/// `locale` is that of the user, such as "de_AT". Empty if nothing is plausible.
std::vector<TextEncoding> plausibleEncodings(std::string_view bytes, std::string_view locale);

/// The most plausible of these encodings that gives the same bytes when the decoded text is encoded again. Null for no
/// idea.
std::optional<TextEncoding> guessEncoding(std::string_view bytes, std::string_view locale);

}  // namespace mirvel::Text
