#include "ui/scripts/scintilla/TextColumns.h"

#include <algorithm>

namespace mirvel::ui {

long widestLine(std::string_view text, int tabWidth) {
  long widest = 0;
  long column = 0;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte == '\n' || byte == '\r') {
      column = 0;
    } else if (byte == '\t') {
      column += tabWidth - column % tabWidth;
    } else if (byte < 0x80 || byte >= 0xC0) {  // not a UTF-8 continuation byte
      column += byte < 0xE0 ? 1 : 2;           // wide characters begin at U+0800, which takes three bytes
    }
    widest = std::max(widest, column);
  }
  return widest;
}

}  // namespace mirvel::ui
