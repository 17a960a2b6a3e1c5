#pragma once

#include <string>
#include <string_view>

#include "core/base/Result.h"
#include "core/documents/TextEncoding.h"

namespace mirvel {

/// Determines the encoding of a file and converts its text to UTF-8. In this order: valid UTF-8; the encoding in the
/// extended attribute, whose value is `attribute`; a byte order mark; `Text::guessEncoding`, which considers the user's
/// locale. An encoding is accepted only if encoding the text again gives the same bytes. If none is, the result
/// isn't exact and has the bytes themselves.
///
/// `Malformed` for a program and for anything else with null bytes that isn't UTF-16 or UTF-32.
Result<DecodedText> readText(std::string bytes, std::string_view attribute, std::string_view locale);

/// Converts the text of a file from an encoding that the user has chosen; a mark is found by itself. The result may not
/// be exact. `UnsupportedEncoding` if the bytes are invalid in it.
Result<DecodedText> readTextAs(std::string_view bytes, const std::string& encoding);

/// Whether bytes are a program for the processor: ELF or Mach-O.
bool isMachineCode(std::string_view bytes);

}  // namespace mirvel
