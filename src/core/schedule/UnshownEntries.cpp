#include "core/schedule/UnshownEntries.h"

#include <cstddef>
#include <cstdint>
#include <optional>

#include "core/schedule/ScheduleTexts.h"
#include "core/schedule/Scheduled.h"

namespace mirvel::Scheduled {

namespace {

using Interval = jobfile::StartCalendarInterval::Interval;
using Key = Interval::CodingKeys;

constexpr std::size_t mostIntervals = 7;  // one for each day of a week

void append(std::string& list, const char* separator, const std::string& text) {
  if (!list.empty()) list += separator;
  list += text;
}

std::string entries(const Interval& interval) {
  std::string result;
  const auto add = [&result](Key key, const std::optional<std::int64_t>& number) {
    if (number) append(result, ", ", std::string(Interval::text(key)) + ' ' + std::to_string(*number));
  };
  add(Key::Month, interval.month);
  add(Key::Day, interval.day);
  add(Key::Weekday, interval.weekday);
  add(Key::Hour, interval.hour);
  add(Key::Minute, interval.minute);
  return result;
}

}  // namespace

std::string unshownEntries(const std::vector<Interval>& intervals, const Localize& localize) {
  std::string result;
  std::size_t count = 0;
  for (const Interval& interval : intervals) {
    if (isFullyShown(interval)) continue;
    if (++count > mostIntervals) return ScheduleTexts(localize).inTheJobFile(result + "; …");
    const std::string text = entries(interval);
    append(result, "; ", text.empty() ? ScheduleTexts(localize).everyMinute() : text);
  }
  return count == 0 ? result : ScheduleTexts(localize).inTheJobFile(result);
}

}  // namespace mirvel::Scheduled
