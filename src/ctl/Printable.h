#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace mirvel::ctl {

enum class Lines { Escape, Keep };

/// Text from files or arguments, made safe for a terminal: control characters (those of C1 and DEL too), bytes that are
/// no UTF-8, and characters that turn the direction of text are told as `\n`, `\x1b`, `\u202e`. With `Lines::Keep` line
/// ends and tabs stay.
std::string printable(std::string_view text, Lines lines = Lines::Escape);

/// The piece of a text that begins at a place: a character, or the bytes of none.
struct Piece {
  std::string_view bytes;
  bool isUtf8;
  bool isUnsafe;  ///< a character beyond ASCII, or DEL, that `printable` tells by its number
  char32_t character;
};
Piece pieceAt(std::string_view text, std::size_t at);

/// How many bytes of visible ASCII and blanks the text begins with.
std::size_t plainLength(std::string_view text);

/// Such as `\u202e`, which is also how JSON writes it.
std::string escapedCharacter(char32_t character);

}  // namespace mirvel::ctl
