#include "core/text/Digits.h"

#include <array>
#include <charconv>
#include <system_error>

namespace mirvel::Decimal {

std::optional<std::int64_t> toInt(std::string_view text) {
  if (text.starts_with('-')) return std::nullopt;
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stopped, failure] = std::from_chars(text.data(), end, number);
  if (failure != std::errc() || stopped != end) return std::nullopt;
  return number;
}

}  // namespace mirvel::Decimal

namespace mirvel::Octal {

std::optional<std::int64_t> toInt(std::string_view text) {
  if (text.starts_with('-')) return std::nullopt;
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stopped, failure] = std::from_chars(text.data(), end, number, 8);
  if (failure != std::errc() || stopped != end) return std::nullopt;
  return number;
}

std::string fromInt(std::int64_t number) {
  std::array<char, 32> digits;
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number, 8);
  return {digits.data(), result.ptr};
}

std::string displayString(std::int64_t mask) {
  constexpr std::size_t classes = 3;
  std::string digits = fromInt(mask);
  if (mask >= 0 && digits.size() < classes) digits.insert(0, classes - digits.size(), '0');
  return digits;
}

}  // namespace mirvel::Octal
