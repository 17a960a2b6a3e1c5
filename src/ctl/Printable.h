#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace mirvel::ctl {

enum class LineFeeds { Escape, Keep };

/// Makes text from files or arguments safe for a terminal: control characters (including C1 and DEL), invalid UTF-8,
/// line separators and characters that change the text direction are escaped, as in `\n`, `\x1b` and `\u202e`.
/// `LineFeeds::Keep` preserves line feeds and tabs.
std::string printable(std::string_view text, LineFeeds lines = LineFeeds::Escape);

/// A piece of text: a character, or bytes that aren't valid UTF-8.
struct Piece {
  std::string_view bytes;
  bool isUtf8;
  bool isUnsafe;  ///< DEL or a character beyond ASCII that `printable` escapes
  char32_t character;
};
Piece pieceAt(std::string_view text, std::size_t at);

/// The length of the prefix that consists of printable ASCII only.
std::size_t plainLength(std::string_view text);

/// For example `\u202e`, an escape that JSON uses as well.
std::string escapedCharacter(char32_t character);

/// The number of terminal columns that a text occupies: two for wide East Asian characters (Unicode Standard Annex 11),
/// none for combining marks. Expects the output of `printable`.
std::size_t textWidth(std::string_view text);

}  // namespace mirvel::ctl
