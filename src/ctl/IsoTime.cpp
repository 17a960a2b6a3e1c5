#include "ctl/IsoTime.h"

#include <algorithm>
#include <cstdio>

#include "core/schedule/ZoneStretches.h"
#include "core/text/Digits.h"

namespace mirvel::ctl {

using namespace std::chrono;

namespace {

/// Consumes text from the front. After the first mismatch `isValid` is false for good.
class Reader {
 public:
  explicit Reader(std::string_view text) : m_rest(text) {}

  bool isValid() const { return m_isValid; }
  bool isAtEnd() const { return m_rest.empty(); }

  bool take(char character) {
    if (m_rest.empty() || m_rest.front() != character) return false;
    m_rest.remove_prefix(1);
    return true;
  }
  void expect(char character) { m_isValid = take(character) && m_isValid; }
  /// Reads exactly `digits` digits; their value must not exceed `greatest`.
  int number(std::size_t digits, int greatest) {
    const auto value = m_rest.size() < digits ? std::nullopt : Decimal::toInt(m_rest.substr(0, digits));
    if (!value || *value > greatest) {
      m_isValid = false;
      return 0;
    }
    m_rest.remove_prefix(digits);
    return static_cast<int>(*value);
  }
  void skipDigits() {
    const std::size_t digits = std::min(m_rest.find_first_not_of("0123456789"), m_rest.size());
    m_isValid = m_isValid && digits > 0;
    m_rest.remove_prefix(digits);
  }

 private:
  std::string_view m_rest;
  bool m_isValid = true;
};

year_month_day readDate(Reader& text) {
  const year theYear(text.number(4, 9999));
  text.expect('-');
  const month theMonth(static_cast<unsigned>(text.number(2, 12)));
  text.expect('-');
  return theYear / theMonth / day(static_cast<unsigned>(text.number(2, 31)));
}

seconds readTime(Reader& text) {
  seconds time = hours(text.number(2, 23));
  text.expect(':');
  time += minutes(text.number(2, 59));
  if (text.take(':')) {
    time += seconds(text.number(2, 59));
    if (text.take('.') || text.take(',')) text.skipDigits();
  }
  return time;
}

/// nullopt without an offset: the time is local then.
std::optional<seconds> readOffset(Reader& text) {
  if (text.take('Z')) return seconds(0);
  const bool isWest = text.take('-');
  if (!isWest && !text.take('+')) return std::nullopt;
  seconds offset = hours(text.number(2, 23));
  const bool hasColon = text.take(':');
  if (hasColon || !text.isAtEnd()) offset += minutes(text.number(2, 59));
  return isWest ? -offset : offset;
}

}  // namespace

std::optional<sys_seconds> isoMoment(std::string_view text, const std::string& zone) {
  Reader reader(text);
  const year_month_day date = readDate(reader);
  seconds time(0);
  std::optional<seconds> offset;
  if (reader.take('T') || reader.take(' ')) {
    time = readTime(reader);
    offset = readOffset(reader);
  }
  if (!reader.isValid() || !reader.isAtEnd() || !date.ok()) return std::nullopt;
  const sys_seconds asUtc = sys_days(date) + time;
  if (offset) return asUtc - *offset;
  constexpr auto farthest = days(2);  // no time zone is farther from UTC, even around a change of its offset
  return ZoneStretches(zone, asUtc - farthest, asUtc + farthest).moment(local_seconds(asUtc.time_since_epoch()));
}

std::string isoText(local_seconds time, seconds offset) {
  const year_month_day date(floor<days>(time));
  const hh_mm_ss clock(time - floor<days>(time));
  const hh_mm_ss zone(floor<minutes>(abs(offset)));
  char text[80];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d%c%02d:%02d", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()), offset < seconds(0) ? '-' : '+',
                static_cast<int>(zone.hours().count()), static_cast<int>(zone.minutes().count()));
  return text;
}

}  // namespace mirvel::ctl
