#pragma once

#include <cstddef>
#include <string_view>

namespace mirvel::ctl {

/// How many columns a text takes on a terminal: two for each wide character of East Asia (Unicode Standard Annex 11),
/// none for marks that stand on the character before. For text that `printable` has made harmless.
std::size_t textWidth(std::string_view text);

}  // namespace mirvel::ctl
