#include "core/text/Digits.h"

#include <charconv>
#include <system_error>

namespace mirvel {

std::optional<std::int64_t> parseDigits(std::string_view text, int base) {
  if (text.starts_with('-')) return std::nullopt;  // from_chars accepts it
  std::int64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stopped, failure] = std::from_chars(text.data(), end, number, base);
  if (failure != std::errc() || stopped != end) return std::nullopt;
  return number;
}

std::optional<std::int64_t> Decimal::toInt(std::string_view text) {
  return parseDigits(text, 10);
}

}  // namespace mirvel
