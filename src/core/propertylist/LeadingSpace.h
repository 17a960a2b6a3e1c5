#pragma once

#include <string_view>

namespace mirvel::propertylist {

/// The rest of a UTF-8 text behind the white space that it begins with, for the texts of numbers: what macOS counts as
/// white space and line ends there is Unicode's, with the zero-width space.
std::string_view withoutLeadingSpace(std::string_view text);

}  // namespace mirvel::propertylist
