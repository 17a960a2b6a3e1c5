#include "core/schedule/NumberText.h"

#include <unicode/dcfmtsym.h>
#include <unicode/locid.h>
#include <unicode/numfmt.h>
#include <unicode/parsepos.h>
#include <unicode/unistr.h>

#include <cmath>

namespace mirvel::Scheduled {

struct NumberText::Format {
  std::unique_ptr<icu::NumberFormat> format;  // null if ICU has no data; then no text is a number
  icu::UnicodeString groupingSeparator;

  std::optional<icu::Formattable> parse(std::string_view text) const;
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

NumberText::NumberText(const std::string& locale) {
  const icu::Locale icuLocale(locale.c_str());
  UErrorCode status = U_ZERO_ERROR;
  auto format = std::make_unique<Format>();
  format->format.reset(icu::NumberFormat::createInstance(icuLocale, status));
  const icu::DecimalFormatSymbols symbols(icuLocale, status);
  format->groupingSeparator = symbols.getSymbol(icu::DecimalFormatSymbols::kGroupingSeparatorSymbol);
  if (U_FAILURE(status)) format->format.reset();
  m_format = std::move(format);
}

NumberText::~NumberText() = default;

std::optional<std::int64_t> NumberText::parseField(std::string_view text) const {
  return whole(m_format->parse(text));
}

std::optional<double> NumberText::parseExactly(std::string_view text) const {
  const auto number = m_format->parse(text);
  UErrorCode status = U_ZERO_ERROR;
  return number ? std::optional(number->getDouble(status)) : std::nullopt;
}

}  // namespace mirvel::Scheduled
