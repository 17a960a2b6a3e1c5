#include "ctl/Printable.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>

#include "core/text/Bytes.h"

namespace mirvel::ctl {

namespace {

std::string escapedByte(char byte) {
  return "\\x" + toHex({&byte, 1});
}

std::string escapedControl(char control) {
  switch (control) {
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      return escapedByte(control);
  }
}

bool isUnsafe(char32_t character) {
  const bool isControl = character >= 0x7F && character < 0xA0;
  // Embeddings, overrides, isolates and marks: they could make a text look like another one.
  const bool turnsDirection = (character >= 0x202A && character <= 0x202E) ||
                              (character >= 0x2066 && character <= 0x2069) || character == 0x200E ||
                              character == 0x200F || character == 0x061C;
  const bool endsLine = character == 0x2028 || character == 0x2029;
  return isControl || turnsDirection || endsLine;
}

std::string printablePiece(const Piece& piece, LineFeeds lines) {
  if (!piece.isUtf8) {
    std::string result;
    for (const char byte : piece.bytes) result += escapedByte(byte);
    return result;
  }
  if (piece.isUnsafe) return escapedCharacter(piece.character);
  const char first = piece.bytes.front();
  const bool isKept = lines == LineFeeds::Keep && (first == '\n' || first == '\t');
  if (piece.character < 0x20 && !isKept) return escapedControl(first);
  return std::string(piece.bytes);
}

std::size_t widthOf(UChar32 character) {
  const auto type = u_charType(character);
  if (type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_FORMAT_CHAR) return 0;
  const int width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

}  // namespace

Piece pieceAt(std::string_view text, std::size_t at) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  std::size_t end = at;
  UChar32 character = 0;
  U8_NEXT(bytes, end, text.size(), character);
  const auto scalar = static_cast<char32_t>(character);
  return {.bytes = text.substr(at, end - at),
          .isUtf8 = character >= 0,
          .isUnsafe = character >= 0 && isUnsafe(scalar),
          .character = scalar};
}

std::size_t plainLength(std::string_view text) {
  const auto end = std::find_if(text.begin(), text.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte >= 0x7F;
  });
  return static_cast<std::size_t>(end - text.begin());
}

std::string escapedCharacter(char32_t character) {
  return "\\u" + toHex(character, 4);
}

std::string printable(std::string_view text, LineFeeds lines) {
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t plain = plainLength(text.substr(at));
    result += text.substr(at, plain);
    at += plain;
    if (at == text.size()) break;
    const Piece piece = pieceAt(text, at);
    result += printablePiece(piece, lines);
    at += piece.bytes.size();
  }
  return result;
}

std::size_t textWidth(std::string_view text) {
  std::size_t width = 0;
  for (std::size_t at = 0; at < text.size();) {
    const Piece piece = pieceAt(text, at);
    width += widthOf(static_cast<UChar32>(piece.character));
    at += piece.bytes.size();
  }
  return width;
}

}  // namespace mirvel::ctl
