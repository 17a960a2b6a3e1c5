#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/base/Error.h"
#include "core/propertylist/Encoding.h"
#include "core/text/Bytes.h"

namespace mirvel::propertylist {

/// Carries a refusal from the depth of a reader to `read`, and no further.
struct ReadFailure {
  std::string message;
  std::size_t offset;  ///< in the text or list being read
  Error::Code code = Error::Code::Malformed;
};

/// A text of the list as messages quote it.
inline std::string quoted(std::string_view text) {
  constexpr std::size_t longest = 40;
  if (text.size() > longest || !isUtf8(text)) return "something";
  return '`' + std::string(text) + '`';
}

/// A byte as messages tell it: `0x1f`.
inline std::string hexByte(unsigned char byte) {
  const char c = static_cast<char>(byte);
  return "0x" + toHex({&c, 1});
}

}  // namespace mirvel::propertylist
