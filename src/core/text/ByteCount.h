#pragma once

#include <cstddef>
#include <string>

namespace mirvel {

/// A number of bytes in the words of a locale: "5 bytes". Plain digits if ICU has no data.
std::string byteCount(std::size_t count, const std::string& locale);

}  // namespace mirvel
