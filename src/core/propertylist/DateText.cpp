#include "core/propertylist/DateText.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <limits>

#include "core/text/Ascii.h"

namespace mirvel::propertylist {

namespace {

constexpr double from1970To2001 = 978'307'200;
constexpr std::int64_t secondsPerDay = 86400;
constexpr std::chrono::sys_days start2001 = std::chrono::January / 1 / 2001;
/// The calendar repeats after this time. It is computed within one cycle, because the years of `std::chrono` end at
/// 32767.
constexpr std::int64_t yearsPerCycle = 400, daysPerCycle = 146097;

constexpr std::int64_t floorDiv(std::int64_t a, std::int64_t b) {
  return a / b - (a % b < 0 ? 1 : 0);
}

/// The cycle of a year; that of 2001 is 0.
std::int64_t cycleOf(std::int64_t year) {
  return floorDiv(year - 2001, yearsPerCycle);
}

/// The day in the first cycle. It may be 0 or beyond the end of the month.
std::chrono::year_month_day dayInCycle(std::int64_t year, int month, int day) {
  return std::chrono::year(static_cast<int>(year - cycleOf(year) * yearsPerCycle)) /
         std::chrono::month(static_cast<unsigned>(month)) / std::chrono::day(static_cast<unsigned>(day));
}

struct DateFields {
  std::int64_t year = 0;
  int month = 0, day = 0, hour = 0, minute = 0, second = 0;
};

/// Reads fields in order. After the first error, all further ones read as 0 and `isDone` stays false.
class DateFieldReader {
 public:
  explicit DateFieldReader(std::string_view text) : m_text(text) {}

  std::int64_t year() {
    const bool negative = take('-');
    std::int64_t number = 0;
    for (; isDigit(); ++m_at) {
      number = number * 10 + (m_text[m_at] - '0');
      if (number > std::numeric_limits<std::int32_t>::max()) m_isGood = false;
      if (!m_isGood) return 0;
    }
    return negative ? -number : number;
  }

  int twoDigits(char before) {
    expect(before);
    int number = 0;
    for (int i = 0; i < 2; ++i, ++m_at) {
      if (!isDigit()) m_isGood = false;
      if (!m_isGood) return 0;
      number = number * 10 + (m_text[m_at] - '0');
    }
    return number;
  }

  void expect(char c) { m_isGood = take(c) && m_isGood; }
  bool isDone() const { return m_isGood && m_at == m_text.size(); }

 private:
  bool isDigit() const { return m_at < m_text.size() && Ascii::isDigit(m_text[m_at]); }
  bool take(char c) {
    if (m_at >= m_text.size() || m_text[m_at] != c) return false;
    ++m_at;
    return true;
  }

  std::string_view m_text;
  std::size_t m_at = 0;
  bool m_isGood = true;
};

std::optional<DateFields> parseFields(std::string_view text) {
  DateFieldReader reader(text);
  DateFields fields;
  fields.year = reader.year();
  fields.month = reader.twoDigits('-');
  fields.day = reader.twoDigits('-');
  fields.hour = reader.twoDigits('T');
  fields.minute = reader.twoDigits(':');
  fields.second = reader.twoDigits(':');
  reader.expect('Z');
  if (!reader.isDone()) return std::nullopt;
  return fields;
}

bool isInRange(const DateFields& fields) {
  return dayInCycle(fields.year, fields.month, fields.day).ok() && fields.hour < 24 && fields.minute < 60 &&
         fields.second < 60;
}

}  // namespace

Date dateSince1970(double seconds) {
  return {.seconds = seconds - from1970To2001};
}

double secondsSince1970(Date date) {
  return date.seconds + from1970To2001;
}

bool isReadable(Date date) {
  constexpr double most = 2147483647.0 * 31556952.0;
  return std::abs(date.seconds) <= most;
}

std::optional<ParsedDate> parseDate(std::string_view text) {
  const auto fields = parseFields(text);
  if (!fields) return std::nullopt;
  // As on macOS: month 0 is January, months above 12 are in the following years, and smaller fields simply add up.
  const int month = std::max(fields->month, 1) - 1;
  const std::int64_t year = fields->year + month / 12;
  const std::chrono::sys_days day = dayInCycle(year, month % 12 + 1, fields->day);
  const std::int64_t days = cycleOf(year) * daysPerCycle + (day - start2001).count();
  const std::int64_t seconds = fields->hour * 3600 + fields->minute * 60 + fields->second;
  const Date date{static_cast<double>(days * secondsPerDay + seconds)};
  return ParsedDate{.date = date, .isInRange = isInRange(*fields)};
}

std::string dateText(Date date) {
  const auto total = static_cast<std::int64_t>(std::floor(date.seconds));
  const std::int64_t days = floorDiv(total, secondsPerDay), rest = total - days * secondsPerDay;
  const std::int64_t cycle = floorDiv(days, daysPerCycle);
  const std::chrono::year_month_day day = start2001 + std::chrono::days(days - cycle * daysPerCycle);
  const std::int64_t year = static_cast<int>(day.year()) + cycle * yearsPerCycle;

  std::array<char, 48> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%04lld-%02u-%02uT%02d:%02d:%02dZ", static_cast<long long>(year),
                static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()), static_cast<int>(rest / 3600),
                static_cast<int>(rest / 60 % 60), static_cast<int>(rest % 60));
  return buffer.data();
}

}  // namespace mirvel::propertylist
