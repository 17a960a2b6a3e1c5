#include "core/text/Digits.h"

#include <array>
#include <charconv>
#include <system_error>

namespace mirvel {

namespace {

std::optional<std::int64_t> parseDigits(std::string_view text, int base) {
  if (text.starts_with('-')) return std::nullopt;  // from_chars accepts it
  std::int64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stopped, failure] = std::from_chars(text.data(), end, number, base);
  if (failure != std::errc() || stopped != end) return std::nullopt;
  return number;
}

}  // namespace

std::optional<std::int64_t> Decimal::toInt(std::string_view text) {
  return parseDigits(text, 10);
}

std::optional<std::int64_t> Octal::toInt(std::string_view text) {
  return parseDigits(text, 8);
}

std::string Octal::displayString(std::int64_t mask) {
  constexpr std::size_t classes = 3;  // user, group, others
  std::array<char, 32> buffer;
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), mask, 8);
  std::string digits(buffer.data(), result.ptr);
  if (mask >= 0 && digits.size() < classes) digits.insert(0, classes - digits.size(), '0');
  return digits;
}

}  // namespace mirvel
