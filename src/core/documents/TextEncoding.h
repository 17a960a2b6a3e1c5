#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/base/Result.h"

namespace mirvel {

class Localize;

/// How the characters of a text file are stored.
struct TextEncoding {
  std::string name = "utf-8";  ///< the IANA name in lower case; the byte order is part of it: "utf-16le"
  bool hasMark = false;        ///< the file begins with a byte order mark, which isn't part of the text

  bool operator==(const TextEncoding&) const = default;
};

/// An encoding that the program can be asked to use.
struct KnownEncoding {
  const char* name;       ///< see `TextEncoding::name`
  const char* region;     ///< where it is used, untranslated: "Western"; empty for Unicode
  const char* standard;   ///< what it is called: "Windows-1252"
  unsigned systemNumber;  ///< of the macOS text system
};

/// All of them, Unicode first, then by region.
std::span<const KnownEncoding> knownEncodings();
/// What menus call the encoding: "UTF-8", "UTF-8 with BOM", "Western (Windows-1252)". The name if it isn't known.
std::string titleOf(const TextEncoding& encoding, const Localize& localize);
/// The byte order mark that the file begins with; empty if there is none.
std::string_view markOf(const TextEncoding& encoding);
/// The encoding of a file that begins with a byte order mark. Null if it doesn't.
std::optional<TextEncoding> encodingByMark(std::string_view bytes);

/// Converts the bytes of a file, including the mark if there should be one, to UTF-8. `UnsupportedEncoding` if the
/// encoding is unknown, or the bytes are invalid in it; the error has the line of the first invalid byte.
Result<std::string> decode(std::string_view bytes, const TextEncoding& encoding);

/// A character that an encoding doesn't have.
struct Unencodable {
  std::size_t line = 0;   ///< counted from 1; lines end with "\n", "\r\n" or "\r"
  std::string character;  ///< in UTF-8; bytes that aren't UTF-8 count as a character each

  bool operator==(const Unencodable&) const = default;
};

/// The bytes of a file, or why there are none.
struct EncodedText {
  std::string bytes = {};
  std::optional<Unencodable> firstUnencodable = {};  ///< then there are no bytes
};

/// Converts UTF-8 to the bytes of a file, including the mark. Nothing is replaced: the text is encoded completely or
/// not at all. `UnsupportedEncoding` if the encoding is unknown.
Result<EncodedText> encode(std::string_view text, const TextEncoding& encoding);

/// A text and how its file stores it.
struct DecodedText {
  std::string text;  ///< UTF-8; the bytes of the file if its encoding couldn't be found
  TextEncoding encoding = {};
  bool isExact = true;  ///< encoding the text gives the bytes of the file
};

/// Decodes text if encoding it again gives the same bytes. Null if not, and if there are null characters.
std::optional<DecodedText> decodeExactly(std::string_view bytes, const TextEncoding& encoding);

/// The value of the extended attribute in which the encoding of a file is kept: "utf-8;134217984". Null for encodings
/// that the macOS text system doesn't number.
std::optional<std::string> attributeValue(const TextEncoding& encoding);
/// The encoding in such a value; its name counts, or its number if the name is missing. Null if neither is known. The
/// result has no mark, and the byte order of "utf-16" and "utf-32" is that of the mark of the file, or big-endian.
std::optional<TextEncoding> encodingOfAttribute(std::string_view value, std::string_view bytes);

}  // namespace mirvel
