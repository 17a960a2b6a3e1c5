#include "core/propertylist/RealText.h"

#include <locale.h>
#include <stdlib.h>
#ifdef __APPLE__
#include <xlocale.h>
#endif

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

#include "core/propertylist/LeadingSpace.h"
#include "core/text/Ascii.h"

namespace mirvel::propertylist {

namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool equalsIgnoringCase(std::string_view text, std::string_view lower) {
  return std::equal(text.begin(), text.end(), lower.begin(), lower.end(),
                    [](char a, char b) { return Ascii::lower(a) == b; });
}

std::size_t skipDigits(std::string_view text, std::size_t at) {
  while (at < text.size() && isDigit(text[at])) ++at;
  return at;
}

/// Whether the text is a decimal number from its first to its last character.
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

/// strtod with the decimal point of the format, whatever the user's locale.
double toDouble(const std::string& decimal) {
  static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
  return strtod_l(decimal.c_str(), nullptr, plain);
}

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

std::string realText(double number) {
  if (std::isnan(number)) return "nan";
  if (std::isinf(number)) return number > 0 ? "+infinity" : "-infinity";
  if (number == 0) return "0.0";
  std::array<char, 32> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%.17g", number);
  std::string text(buffer.data());
  std::replace(text.begin(), text.end(), ',', '.');  // printf uses the locale's decimal point
  return text;
}

std::optional<double> parseReal(std::string_view text) {
  if (const auto special = specialReal(text)) return special;
  text = withoutLeadingSpace(text);
  if (!isDecimal(text)) return std::nullopt;
  return toDouble(std::string(text));
}

}  // namespace mirvel::propertylist
