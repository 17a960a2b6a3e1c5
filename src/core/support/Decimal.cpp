#include "core/support/Decimal.h"

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
