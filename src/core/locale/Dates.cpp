#include "core/locale/Dates.h"

#include <unicode/datefmt.h>
#include <unicode/dtfmtsym.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <cassert>
#include <cstdint>
#include <memory>

namespace mirvel::Date {

namespace {

/// Copies as many names as fit; names that ICU lacks stay empty.
template <std::size_t count>
std::array<std::string, count> names(const icu::UnicodeString* symbols, std::int32_t available, std::int32_t first) {
  std::array<std::string, count> result;
  for (std::size_t i = 0; i < count && first < available; ++i, ++first) symbols[first].toUTF8String(result[i]);
  return result;
}

icu::DateFormatSymbols symbolsOf(const std::string& locale) {
  UErrorCode status = U_ZERO_ERROR;
  return {icu::Locale(locale.c_str()), status};
}

}  // namespace

std::array<std::string, 7> weekdays(const std::string& locale) {
  const auto symbols = symbolsOf(locale);
  std::int32_t count = 0;
  const auto* wide = symbols.getWeekdays(count, icu::DateFormatSymbols::STANDALONE, icu::DateFormatSymbols::WIDE);
  return names<7>(wide, count, 1);  // entry 0 is unused
}

std::array<std::string, 12> months(const std::string& locale) {
  const auto symbols = symbolsOf(locale);
  std::int32_t count = 0;
  const auto* wide = symbols.getMonths(count, icu::DateFormatSymbols::STANDALONE, icu::DateFormatSymbols::WIDE);
  return names<12>(wide, count, 0);
}

std::string standardText(double seconds, const std::string& locale) {
  const std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
      icu::DateFormat::kMedium, icu::DateFormat::kShort, icu::Locale(locale.c_str())));
  icu::UnicodeString text;
  std::string result;
  return format ? format->format(seconds * 1000, text).toUTF8String(result) : result;
}

std::chrono::local_seconds timeOfDay(int hour, int minute) {
  using namespace std::chrono;
  assert(hour >= 0 && hour < 24 && minute >= 0 && minute < 60);
  return local_days(January / 1 / 2000) + hours(hour) + minutes(minute);
}

int hour(std::chrono::local_seconds time) {
  using namespace std::chrono;
  return static_cast<int>(duration_cast<hours>(time - floor<days>(time)).count());
}

int minute(std::chrono::local_seconds time) {
  using namespace std::chrono;
  return static_cast<int>(duration_cast<minutes>(time - floor<hours>(time)).count());
}

}  // namespace mirvel::Date
