#pragma once

#include <string>
#include <string_view>

namespace mirvel::jobfile {

/// The text with each backslash-blank replaced.
std::string replaceEscapedBlanks(std::string_view text, std::string_view replacement);

}  // namespace mirvel::jobfile
