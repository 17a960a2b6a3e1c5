#include "ctl/TextWidth.h"

#include <unicode/uchar.h>

#include "ctl/Printable.h"

namespace mirvel::ctl {

namespace {

std::size_t widthOf(UChar32 character) {
  const auto type = u_charType(character);
  if (type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_FORMAT_CHAR) return 0;
  const int width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

}  // namespace

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
