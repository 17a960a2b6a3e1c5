#pragma once

#include <string>
#include <vector>

namespace mirvel {

/// The elements as one lists them in a sentence in the language of the locale: "a, b, and c".
std::string listText(const std::vector<std::string>& elements, const std::string& locale);

}  // namespace mirvel
