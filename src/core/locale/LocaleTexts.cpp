#include "core/locale/LocaleTexts.h"

#include <unicode/listformatter.h>
#include <unicode/locid.h>
#include <unicode/measunit.h>
#include <unicode/numberformatter.h>
#include <unicode/unistr.h>

#include <cstdint>
#include <memory>

namespace mirvel {

namespace {

/// Where ICU has no data.
std::string withCommas(const std::vector<std::string>& elements) {
  std::string result;
  for (const auto& element : elements) result.append(result.empty() ? "" : ", ").append(element);
  return result;
}

}  // namespace

std::string listText(const std::vector<std::string>& elements, const std::string& locale) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::ListFormatter> format(
      icu::ListFormatter::createInstance(icu::Locale(locale.c_str()), status));
  std::vector<icu::UnicodeString> texts;
  texts.reserve(elements.size());
  for (const auto& element : elements) texts.push_back(icu::UnicodeString::fromUTF8(element));
  icu::UnicodeString joined;
  if (U_SUCCESS(status)) format->format(texts.data(), static_cast<std::int32_t>(texts.size()), joined, status);
  if (U_FAILURE(status)) return withCommas(elements);
  std::string result;
  return joined.toUTF8String(result);
}

std::string byteCount(std::size_t count, const std::string& locale) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString text = icu::number::NumberFormatter::withLocale(icu::Locale(locale.c_str()))
                                      .unit(icu::MeasureUnit::getByte())
                                      .unitWidth(UNUM_UNIT_WIDTH_FULL_NAME)
                                      .formatInt(static_cast<std::int64_t>(count), status)
                                      .toString(status);
  std::string result;
  return U_FAILURE(status) ? std::to_string(count) : text.toUTF8String(result);
}

}  // namespace mirvel
