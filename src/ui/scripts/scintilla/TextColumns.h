#pragma once

#include <string_view>

namespace mirvel::ui {

/// The columns that the longest line of a UTF-8 text takes in a font of fixed width, or somewhat more: a character may
/// take two. One pass over the text.
long widestLine(std::string_view text, int tabWidth);

}  // namespace mirvel::ui
