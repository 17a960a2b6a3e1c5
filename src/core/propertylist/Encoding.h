#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/base/Result.h"

namespace mirvel::propertylist {

/// How the macOS writer begins every list. The reader compares with the declaration first, since nearly all lists have
/// it.
constexpr std::string_view xmlDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
constexpr std::string_view xmlDoctype =
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n";

/// The text of an XML list in UTF-8. Not copyable, since `utf8` may refer to `converted`.
struct DecodedText {
  std::optional<std::string> converted;  ///< set if the input was in another encoding
  std::string_view utf8;                 ///< without a byte-order mark; part of the input, or `converted`
  /// Byte offset of the first byte above 0x7F in a list that is declared as ASCII. Such a list is read as Latin-1.
  std::optional<std::size_t> notAscii;

  DecodedText() = default;
  DecodedText(const DecodedText&) = delete;
  DecodedText& operator=(const DecodedText&) = delete;
};

/// Determines the encoding of an XML list and converts it to UTF-8. In this order:
///
/// 1. a byte-order mark (UTF-8, UTF-16, UTF-32);
/// 2. zeros among the first four bytes, which must be ASCII characters in UTF-16 or UTF-32;
/// 3. `encoding=` in the XML declaration, directly followed by a quoted name that ICU knows, in any case;
/// 4. UTF-8.
///
/// UTF-8 isn't copied and not checked: the scanner checks the strings that it returns. `UnsupportedEncoding`, at line
/// 1, for an unknown name and for bytes that are invalid in the encoding.
Result<void> decodeText(std::string_view bytes, DecodedText& result);

/// Whether the bytes are well-formed UTF-8: no surrogates, no overlong forms, nothing beyond U+10FFFF.
bool isUtf8(std::string_view bytes);

/// Appends a code point to UTF-8 text. Returns false, and appends nothing, for a surrogate or a number beyond U+10FFFF.
bool appendCharacter(std::string& text, std::uint32_t character);

/// Converts big-endian UTF-16 to UTF-8. nullopt if there is an unpaired surrogate. A single last byte is ignored.
std::optional<std::string> utf8FromUtf16BigEndian(std::string_view bytes);

/// Converts UTF-8 to big-endian UTF-16. Ill-formed parts become U+FFFD.
std::string utf16BigEndian(std::string_view utf8);

/// Converts Latin-1 to UTF-8. Every byte is valid.
std::string utf8FromLatin1(std::string_view bytes);

}  // namespace mirvel::propertylist
