#include "core/propertylist/Numbers.h"

#include <locale.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>
#ifdef __APPLE__
#include <xlocale.h>
#endif

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "core/text/Ascii.h"

namespace mirvel::propertylist {

namespace {

constexpr UChar32 zeroWidthSpace = 0x200B;

/// Separators (categories Z*) and the control characters tab to carriage return and next line. Not `u_isspace`, which
/// includes the information separators U+001C to U+001F, which macOS rejects.
bool isSpace(UChar32 character) {
  return (character >= '\t' && character <= '\r') || character == 0x85 || character == zeroWidthSpace ||
         (U_GET_GC_MASK(character) & U_GC_Z_MASK) != 0;
}

/// macOS skips Unicode white space before a number, and the zero-width space, which isn't white space in Unicode.
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

bool equalsIgnoringCase(std::string_view text, std::string_view lower) {
  return std::equal(text.begin(), text.end(), lower.begin(), lower.end(),
                    [](char a, char b) { return Ascii::lower(a) == b; });
}

std::size_t skipDigits(std::string_view text, std::size_t at) {
  while (at < text.size() && Ascii::isDigit(text[at])) ++at;
  return at;
}

/// Whether the whole text is a decimal number.
bool isDecimal(std::string_view text) {
  std::size_t at = !text.empty() && (text[0] == '+' || text[0] == '-') ? 1 : 0;
  const std::size_t whole = skipDigits(text, at);
  std::size_t digits = whole - at;
  at = whole;
  if (at < text.size() && text[at] == '.') {
    const std::size_t fraction = skipDigits(text, at + 1);
    digits += fraction - at - 1;
    at = fraction;
  }
  if (digits == 0) return false;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
    const std::size_t exponent = skipDigits(text, at);
    if (exponent == at) return false;
    at = exponent;
  }
  return at == text.size();
}

/// Makes the calling thread use the decimal point of the format, whatever the user's locale is: toolkits set the locale
/// of the whole process, and some locales have a decimal point of several bytes. Not `std::from_chars` and
/// `std::to_chars`, which libc++ lacks for floating-point numbers.
class PlainNumbers {
 public:
  PlainNumbers() {
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
    m_before = uselocale(plain);
  }
  PlainNumbers(const PlainNumbers&) = delete;
  PlainNumbers& operator=(const PlainNumbers&) = delete;
  ~PlainNumbers() { uselocale(m_before); }

 private:
  locale_t m_before;
};

std::optional<double> specialReal(std::string_view text) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  if (equalsIgnoringCase(text, "nan")) return std::numeric_limits<double>::quiet_NaN();
  for (const std::string_view name : {"infinity", "+infinity", "inf", "+inf"}) {
    if (equalsIgnoringCase(text, name)) return infinity;
  }
  for (const std::string_view name : {"-infinity", "-inf"}) {
    if (equalsIgnoringCase(text, name)) return -infinity;
  }
  return std::nullopt;
}

}  // namespace

ParsedInteger parseInteger(std::string_view text) {
  text = withoutLeadingSpace(text);
  const bool negative = takeSign(text);
  text = withoutLeadingSpace(text);
  const std::uint64_t base = takeHexPrefix(text) ? 16 : 10;
  if (text.empty()) return {.number = {}, .problem = "isn't a number"};

  constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
  const std::uint64_t mostBefore = most / base;
  std::uint64_t number = 0;
  for (const char c : text) {
    const auto digit = Ascii::hexValue(c);
    if (!digit || *digit >= base) return {.number = {}, .problem = "isn't a number"};
    if (number > mostBefore || number * base > most - *digit) return {.number = {}, .problem = "is too large"};
    number = number * base + *digit;
  }
  constexpr std::uint64_t leastMagnitude = std::uint64_t{1} << 63U;
  if (!negative) return {.number = Integer::fromUnsigned(number)};
  if (number > leastMagnitude) return {.number = {}, .problem = "is too small"};
  return {.number = Integer(static_cast<std::int64_t>(~number + 1))};
}

std::string realText(double number) {
  if (std::isnan(number)) return "nan";
  if (std::isinf(number)) return number > 0 ? "+infinity" : "-infinity";
  if (number == 0) return "0.0";
  const PlainNumbers plain;
  std::array<char, 32> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%.17g", number);
  return buffer.data();
}

std::optional<double> parseReal(std::string_view text) {
  if (const auto special = specialReal(text)) return special;
  text = withoutLeadingSpace(text);
  if (!isDecimal(text)) return std::nullopt;
  const PlainNumbers plain;
  return std::strtod(std::string(text).c_str(), nullptr);
}

}  // namespace mirvel::propertylist
