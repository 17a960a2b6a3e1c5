#include "core/text/ByteCount.h"

#include <unicode/locid.h>
#include <unicode/measunit.h>
#include <unicode/numberformatter.h>
#include <unicode/unistr.h>

#include <cstdint>

namespace mirvel {

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
