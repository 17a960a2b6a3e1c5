#include "core/schedule/NumberText.h"

#include <unicode/dcfmtsym.h>
#include <unicode/locid.h>
#include <unicode/numfmt.h>
#include <unicode/parsepos.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <charconv>
#include <cmath>
#include <system_error>

namespace mirvel::Scheduled {

struct NumberText::Format {
  std::unique_ptr<icu::NumberFormat> format;  // null if ICU has no data; then no text is a number
  icu::UnicodeString groupingSeparator;
  UChar32 zero = '0';

  std::optional<icu::Formattable> parse(std::string_view text) const;
  icu::UnicodeString plain(const icu::UnicodeString& text) const;
};

namespace {

std::optional<std::int64_t> whole(const std::optional<icu::Formattable>& number) {
  UErrorCode status = U_ZERO_ERROR;
  const std::int64_t result = number ? number->getInt64(status) : 0;
  return number && U_SUCCESS(status) ? std::optional(result) : std::nullopt;
}

}  // namespace

std::optional<icu::Formattable> NumberText::Format::parse(std::string_view text) const {
  auto digits = icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
  if (!groupingSeparator.isEmpty()) digits.findAndReplace(groupingSeparator, {});
  if (!format || digits.isEmpty()) return std::nullopt;
  icu::Formattable number;
  icu::ParsePosition position;
  format->parse(digits, number, position);
  if (position.getIndex() != digits.length()) return std::nullopt;
  UErrorCode status = U_ZERO_ERROR;
  if (!std::isfinite(number.getDouble(status))) return std::nullopt;  // ICU parses "NaN" and "∞"
  return number;
}

/// The text with Latin digits, minus signs and spaces, and without the marks by which some locales order a number.
icu::UnicodeString NumberText::Format::plain(const icu::UnicodeString& text) const {
  icu::UnicodeString result;
  for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
    const UChar32 character = text.char32At(i);
    if (u_hasBinaryProperty(character, UCHAR_BIDI_CONTROL)) continue;
    if (character >= zero && character <= zero + 9) {
      result.append(static_cast<char16_t>('0' + (character - zero)));
    } else if (character == 0x2212) {
      result.append(u'-');
    } else {
      result.append(u_isUWhiteSpace(character) ? UChar32{' '} : character);
    }
  }
  return result;
}

NumberText::NumberText(const std::string& locale) {
  const icu::Locale icuLocale(locale.c_str());
  UErrorCode status = U_ZERO_ERROR;
  auto format = std::make_unique<Format>();
  format->format.reset(icu::NumberFormat::createInstance(icuLocale, status));
  const icu::DecimalFormatSymbols symbols(icuLocale, status);
  format->groupingSeparator = symbols.getSymbol(icu::DecimalFormatSymbols::kGroupingSeparatorSymbol);
  format->zero = symbols.getConstSymbol(icu::DecimalFormatSymbols::kZeroDigitSymbol).char32At(0);
  if (U_FAILURE(status)) format->format.reset();
  m_format = std::move(format);
}

NumberText::~NumberText() = default;

std::optional<std::int64_t> NumberText::parseField(std::string_view text) const {
  return whole(m_format->parse(text));
}

std::optional<std::int64_t> NumberText::parseWhole(std::string_view text) const {
  const auto given = icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
  const icu::UnicodeString plain = m_format->plain(given);
  const bool isNegative = plain.startsWith(u"-");
  std::string digits = isNegative ? "-" : "";
  for (std::int32_t i = 0; i < plain.length(); ++i) {
    if (plain[i] >= '0' && plain[i] <= '9') digits += static_cast<char>(plain[i]);
  }
  std::int64_t number = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stopped, failure] = std::from_chars(digits.data(), end, number);
  if (failure != std::errc() || stopped != end) return std::nullopt;
  if (plain == icu::UnicodeString::fromUTF8(digits)) return number;
  icu::UnicodeString grouped;
  if (m_format->format) m_format->format->format(number, grouped);
  return plain == m_format->plain(grouped) ? std::optional(number) : std::nullopt;
}

std::optional<double> NumberText::parseExactly(std::string_view text) const {
  const auto number = m_format->parse(text);
  UErrorCode status = U_ZERO_ERROR;
  return number ? std::optional(number->getDouble(status)) : std::nullopt;
}

}  // namespace mirvel::Scheduled
