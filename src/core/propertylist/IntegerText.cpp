#include "core/propertylist/IntegerText.h"

#include <limits>

#include "core/propertylist/LeadingSpace.h"

namespace mirvel::propertylist {

namespace {

bool takeSign(std::string_view& text) {
  const bool negative = !text.empty() && text.front() == '-';
  if (negative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
  return negative;
}

bool takeHexPrefix(std::string_view& text) {
  if (text.size() < 2 || text[0] != '0' || (text[1] != 'x' && text[1] != 'X')) return false;
  text.remove_prefix(2);
  return true;
}

/// The digit's value, or a number beyond any base.
unsigned digitValue(char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a') + 10;
  if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A') + 10;
  return 99;
}

}  // namespace

ParsedInteger parseInteger(std::string_view text) {
  text = withoutLeadingSpace(text);
  const bool negative = takeSign(text);
  text = withoutLeadingSpace(text);
  const std::uint64_t base = takeHexPrefix(text) ? 16 : 10;
  if (text.empty()) return {.number = {}, .problem = "is no number"};

  constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
  const std::uint64_t mostBefore = most / base;
  std::uint64_t number = 0;
  for (const char c : text) {
    const unsigned digit = digitValue(c);
    if (digit >= base) return {.number = {}, .problem = "is no number"};
    if (number > mostBefore || number * base > most - digit) return {.number = {}, .problem = "is too large"};
    number = number * base + digit;
  }
  constexpr std::uint64_t leastMagnitude = std::uint64_t{1} << 63U;
  if (!negative) return {.number = Integer::fromUnsigned(number)};
  if (number > leastMagnitude) return {.number = {}, .problem = "is too small"};
  return {.number = Integer(static_cast<std::int64_t>(~number + 1))};
}

}  // namespace mirvel::propertylist
