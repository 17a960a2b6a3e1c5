#pragma once

#include <string_view>

namespace mirvel::ui {

/// An upper bound for the columns of the longest line of a UTF-8 text in a fixed-width font. Characters that may be
/// wide count as two columns. One pass over the text.
long widestLine(std::string_view text, int tabWidth);

}  // namespace mirvel::ui
