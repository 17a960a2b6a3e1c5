#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/base/Result.h"

namespace mirvel::propertylist {

/// The beginning of a list as the macOS writer has it. Nearly all lists have the same declaration.
constexpr std::string_view xmlDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
constexpr std::string_view xmlDoctype =
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n";

/// The text of an XML list in UTF-8. `converted` holds it where the bytes were in another encoding.
struct DecodedText {
  std::optional<std::string> converted;
  std::string_view utf8;  ///< without a byte-order mark; refers to the input or to `converted`
  /// Offset of the first byte over 0x7F in a list that calls itself ASCII; such bytes are read as Latin-1.
  std::optional<std::size_t> notAscii;

  DecodedText() = default;
  DecodedText(const DecodedText&) = delete;
  DecodedText& operator=(const DecodedText&) = delete;
};

/// Finds the encoding by byte-order mark, by the zeros of UTF-16 and UTF-32, or by the XML declaration; UTF-8 without
/// any of them. UTF-8 is handed on as it stands, unchecked: the reader checks the texts it takes.
Result<void> decodeText(std::string_view bytes, DecodedText& result);

/// Whether the bytes are well-formed UTF-8.
bool isUtf8(std::string_view bytes);

/// Adds the character to a UTF-8 text; false for a surrogate or beyond U+10FFFF.
bool appendCharacter(std::string& text, std::uint32_t character);

/// UTF-8 of big-endian UTF-16; none if half of a surrogate pair is missing.
std::optional<std::string> utf8FromUtf16BigEndian(std::string_view bytes);

/// Big-endian UTF-16 of UTF-8.
std::string utf16BigEndian(std::string_view utf8);

/// UTF-8 of Latin-1.
std::string utf8FromLatin1(std::string_view bytes);

}  // namespace mirvel::propertylist
