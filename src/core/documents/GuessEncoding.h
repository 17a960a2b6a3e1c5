#pragma once

#include <optional>
#include <string_view>

#include "core/documents/TextEncoding.h"

namespace mirvel::Text {

/// Decodes bytes that aren't UTF-8 in the most plausible encoding that gives the same bytes when the text is encoded
/// again (`decodeExactly`); it has no byte order mark. Null for no idea.
///
/// Each candidate is judged by what the bytes decode to: whether there is a language whose alphabet has the letters,
/// whether words are of one script and capitals where words have them, and whether there are control characters.
/// Equal candidates are ordered by ICU's detector, by the language of the user, and by how common they are. Only the
/// lines with bytes above 0x7F count, and of these the first 64 KiB.
///
/// `locale` is that of the user, such as "de_AT". Thread-safe.
std::optional<DecodedText> guessEncoding(std::string_view bytes, std::string_view locale);

}  // namespace mirvel::Text
