#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace mirvel {

/// The elements as a sentence of the locale's language lists them: "a, b, and c". With commas if ICU has no data.
std::string listText(const std::vector<std::string>& elements, const std::string& locale);

/// A number of bytes in the words of a locale: "5 bytes". Plain digits if ICU has no data.
std::string byteCount(std::size_t count, const std::string& locale);

}  // namespace mirvel
