#include "core/propertylist/LeadingSpace.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cstddef>
#include <cstdint>

namespace mirvel::propertylist {

namespace {

constexpr UChar32 zeroWidthSpace = 0x200B;

/// Separators of the categories Z*, and the controls that are white space: tab to carriage return, and next line. The
/// information separators, which `u_isspace` counts too, aren't among them.
bool isSpace(UChar32 character) {
  return (character >= '\t' && character <= '\r') || character == 0x85 || character == zeroWidthSpace ||
         (U_GET_GC_MASK(character) & U_GC_Z_MASK) != 0;
}

}  // namespace

std::string_view withoutLeadingSpace(std::string_view text) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  std::size_t next = 0;
  for (std::size_t at = 0; at < text.size(); at = next) {
    UChar32 character = 0;
    U8_NEXT(bytes, next, text.size(), character);
    if (character < 0 || !isSpace(character)) return text.substr(at);
  }
  return {};
}

}  // namespace mirvel::propertylist
