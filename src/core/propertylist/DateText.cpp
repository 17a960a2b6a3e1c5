#include "core/propertylist/DateText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

#include "core/text/Ascii.h"

namespace mirvel::propertylist {

namespace {

constexpr std::int64_t secondsPerDay = 86400;

/// Days from 1 January of year 1. Not by `std::chrono`, whose years end at 32767.
constexpr std::int64_t daysBeforeYear(std::int64_t year) {
  const std::int64_t last = year - 1;
  const auto floorDiv = [](std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); };
  return 365 * last + floorDiv(last, 4) - floorDiv(last, 100) + floorDiv(last, 400);
}
constexpr double from1970To2001 = 978'307'200;
constexpr std::int64_t daysBefore2001 = daysBeforeYear(2001);

bool isLeap(std::int64_t year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int daysInMonth(std::int64_t year, int month) {
  constexpr std::array<int, 12> days = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return days[static_cast<std::size_t>(month - 1)] + (month == 2 && isLeap(year) ? 1 : 0);
}

/// Days from 1 January 2001; `day` may be 0 or beyond the end of the month.
std::int64_t daysFrom2001(std::int64_t year, int month, int day) {
  std::int64_t days = daysBeforeYear(year) - daysBefore2001;
  for (int m = 1; m < month; ++m) days += daysInMonth(year, m);
  return days + day - 1;
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
  return fields.month >= 1 && fields.month <= 12 && fields.day >= 1 &&
         fields.day <= daysInMonth(fields.year, fields.month) && fields.hour < 24 && fields.minute < 60 &&
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
  const std::int64_t days = daysFrom2001(fields->year + month / 12, month % 12 + 1, fields->day);
  const std::int64_t seconds = fields->hour * 3600 + fields->minute * 60 + fields->second;
  const Date date{static_cast<double>(days * secondsPerDay + seconds)};
  return ParsedDate{.date = date, .isInRange = isInRange(*fields)};
}

std::string dateText(Date date) {
  const auto total = static_cast<std::int64_t>(std::floor(date.seconds));
  std::int64_t days = total / secondsPerDay;
  std::int64_t rest = total % secondsPerDay;
  if (rest < 0) {
    rest += secondsPerDay;
    --days;
  }
  // The calendar repeats after 400 years, which have exactly 146097 days. The estimate is off by at most a few years.
  std::int64_t year = 2001 + static_cast<std::int64_t>(std::floor(static_cast<double>(days) * 400 / 146097));
  while (daysBeforeYear(year + 1) - daysBefore2001 <= days) ++year;
  while (daysBeforeYear(year) - daysBefore2001 > days) --year;
  auto day = static_cast<int>(days - (daysBeforeYear(year) - daysBefore2001));
  int month = 1;
  for (; day >= daysInMonth(year, month); ++month) day -= daysInMonth(year, month);

  std::array<char, 48> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%04lld-%02d-%02dT%02d:%02d:%02dZ", static_cast<long long>(year), month,
                day + 1, static_cast<int>(rest / 3600), static_cast<int>(rest / 60 % 60), static_cast<int>(rest % 60));
  return buffer.data();
}

}  // namespace mirvel::propertylist
