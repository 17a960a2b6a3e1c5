#include "core/schedule/AppliedRules.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>

#include "core/jobfile/Plist.h"
#include "core/locale/Dates.h"
#include "core/schedule/RuleRow.h"
#include "core/schedule/Scheduled.h"

namespace mirvel::Scheduled {

namespace {

using jobfile::StartCalendarInterval;
using Interval = StartCalendarInterval::Interval;

/// The element of a row; null if it is missing or of another type.
template <typename Element>
const Element* elementAt(const Row& row, std::size_t index) {
  return index < row.size() ? std::get_if<Element>(&row[index]) : nullptr;
}

template <std::size_t count>
std::size_t indexOrZero(const std::array<std::string, count>& names, std::string_view name) {
  const auto found = std::find(names.begin(), names.end(), name);
  return found == names.end() ? 0 : static_cast<std::size_t>(found - names.begin());
}

Interval intervalAt(Time time) {
  return {.minute = Date::minute(time), .hour = Date::hour(time)};
}

class RowReader {
 public:
  RowReader(const Texts& texts, const NumberText& numbers, const Week& week)
      : m_texts(texts), m_numbers(numbers), m_week(week) {}

  void read(const Row& row) {
    const auto* kind = elementAt<std::string>(row, 0);
    if (!kind) return;
    if (*kind == m_texts.of(Kind::repeatInterval)) return readRepeatInterval(row);
    if (*kind == m_texts.of(Kind::everyHour)) return readEveryHour(row);
    if (*kind == m_texts.of(Kind::everyDay)) return readEveryDay(row);
    if (*kind == m_texts.of(Kind::dayOfWeek)) return readDayOfWeek(row);
    if (*kind == m_texts.of(Kind::dayOfMonth)) return readDayOfMonth(row);
    if (*kind == m_texts.of(Kind::dayOfYear)) return readDayOfYear(row);
  }

  AppliedRules result() && {
    AppliedRules rules{.startInterval = m_seconds};
    if (!m_intervals.empty()) {
      rules.startCalendarInterval = StartCalendarInterval{.intervals = std::move(m_intervals), .singleValue = false};
    }
    return rules;
  }

 private:
  void readRepeatInterval(const Row& row) {
    const auto* unit = elementAt<std::string>(row, 1);
    const auto number = fieldNumber(row, 2);
    if (m_seconds || !unit || !number) return;
    const std::int64_t factor = secondsIn(*unit);
    if (*number > std::numeric_limits<std::int64_t>::max() / factor) return;
    m_seconds = std::max(std::max(*number, std::int64_t{0}) * factor, shortestInterval);
  }

  void readEveryHour(const Row& row) {
    if (const auto minute = fieldNumber(row, 1)) m_intervals.push_back({.minute = *minute});
  }

  void readEveryDay(const Row& row) {
    if (const auto* picker = elementAt<TimePicker>(row, 1)) m_intervals.push_back(intervalAt(picker->time));
  }

  void readDayOfWeek(const Row& row) {
    const auto* day = elementAt<std::string>(row, 1);
    const auto* picker = elementAt<TimePicker>(row, 2);
    if (!day || !picker) return;
    const Days days = daysNamed(*day);
    for (std::size_t weekday = 0; weekday < days.size(); ++weekday) {
      if (!days[weekday]) continue;
      Interval interval = intervalAt(picker->time);
      interval.weekday = static_cast<std::int64_t>(weekday);
      m_intervals.push_back(interval);
    }
  }

  void readDayOfMonth(const Row& row) {
    const auto day = popUpNumber(row, 1);
    const auto* picker = elementAt<TimePicker>(row, 2);
    if (!day || !picker) return;
    Interval interval = intervalAt(picker->time);
    interval.day = day;
    m_intervals.push_back(interval);
  }

  void readDayOfYear(const Row& row) {
    const auto* month = elementAt<std::string>(row, 1);
    const auto day = popUpNumber(row, 2);
    const auto* picker = elementAt<TimePicker>(row, 3);
    if (!month || !day || !picker) return;
    Interval interval = intervalAt(picker->time);
    interval.day = day;
    interval.month = static_cast<std::int64_t>(indexOrZero(m_texts.monthNames, *month) + 1);
    m_intervals.push_back(interval);
  }

  std::optional<std::int64_t> fieldNumber(const Row& row, std::size_t index) const {
    const auto* field = elementAt<NumberField>(row, index);
    return field ? m_numbers.parseField(field->text) : std::nullopt;
  }

  std::optional<std::int64_t> popUpNumber(const Row& row, std::size_t index) const {
    const auto* text = elementAt<std::string>(row, index);
    return text ? m_numbers.parseField(*text) : std::nullopt;
  }

  std::int64_t secondsIn(const std::string& unit) const {
    if (unit == m_texts.of(RepeatInterval::Unit::minutes)) return 60;
    if (unit == m_texts.of(RepeatInterval::Unit::hours)) return 3600;
    if (unit == m_texts.of(RepeatInterval::Unit::days)) return 86400;
    return 1;
  }

  Days daysNamed(const std::string& name) const {
    if (name == m_texts.weekdays) return m_week.weekdays;
    if (name == m_texts.weekends) return m_week.weekends;
    return Days().set(indexOrZero(m_texts.dayNames, name));
  }

  const Texts& m_texts;
  const NumberText& m_numbers;
  const Week& m_week;
  std::optional<std::int64_t> m_seconds;
  std::vector<Interval> m_intervals;
};

/// Whether both are on the same weekday, or neither has one.
bool haveSameWeekday(const Interval& one, const Interval& other) {
  return shownInterval(one).weekday == shownInterval(other).weekday;
}

/// Changes `interval` so that it shows `wanted`, keeping its other contents unless they would make it show something
/// else.
Interval edited(const Interval& interval, const Interval& wanted) {
  const Interval shown = shownInterval(interval);
  Interval result = interval;
  if (shown.minute != wanted.minute || shown.hour != wanted.hour) {  // edited in one control
    result.minute = wanted.minute;
    result.hour = wanted.hour;
  }
  if (shown.day != wanted.day) result.day = wanted.day;
  if (shown.weekday != wanted.weekday) result.weekday = wanted.weekday;
  if (shown.month != wanted.month) result.month = wanted.month;
  if (shownInterval(result) == shownInterval(wanted)) return result;
  result = wanted;
  result.origin = interval.origin;
  return result;
}

/// The intervals of an edited row. Each new interval inherits from the old one of the same weekday; if all weekdays
/// changed, they are paired in their order instead.
std::vector<Interval> edited(const std::vector<Interval>& intervals, const std::vector<Interval>& wanted) {
  std::vector<Interval> result;
  bool hasCommonDay = false;
  for (const Interval& now : wanted) {
    const std::size_t before = result.size();
    for (const Interval& interval : intervals) {
      if (haveSameWeekday(interval, now)) result.push_back(edited(interval, now));
    }
    hasCommonDay = hasCommonDay || result.size() > before;
    if (result.size() == before) result.push_back(now);
  }
  for (std::size_t i = 0; !hasCommonDay && i < std::min(intervals.size(), result.size()); ++i) {
    result[i] = edited(intervals[i], result[i]);
  }
  return result;
}

/// Restores the order of the file; new intervals stay after the one that they follow.
void sortByOrigin(std::vector<Interval>& intervals) {
  std::vector<std::pair<std::size_t, Interval>> placed;
  std::size_t place = 0;
  for (const Interval& interval : intervals) {
    if (interval.origin) place = *interval.origin + 1;
    placed.emplace_back(place, interval);
  }
  std::stable_sort(placed.begin(), placed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::transform(placed.begin(), placed.end(), intervals.begin(), [](auto& each) { return each.second; });
}

}  // namespace

AppliedRules readRows(const std::vector<Row>& rows, const Texts& texts, const NumberText& numbers, const Week& week) {
  RowReader reader(texts, numbers, week);
  for (const Row& row : rows) reader.read(row);
  return std::move(reader).result();
}

AppliedRules appliedRules(const std::vector<RuleRow>& rows, const Texts& texts, const NumberText& numbers,
                          const Week& week) {
  const auto read = [&](const Row& row) { return readRows({row}, texts, numbers, week); };
  AppliedRules result;
  std::vector<Interval> intervals;
  for (const RuleRow& row : rows) {
    const AppliedRules now = read(row.displayValues);
    FileSource source{now.startInterval, now.startCalendarInterval.value_or(StartCalendarInterval()).intervals};
    if (row.origin && read(row.origin->row) == now) {
      source = row.origin->source;
    } else if (row.origin) {
      source.intervals = edited(row.origin->source.intervals, source.intervals);
    }
    if (!result.startInterval) result.startInterval = source.startInterval;
    intervals.insert(intervals.end(), source.intervals.begin(), source.intervals.end());
  }
  sortByOrigin(intervals);
  if (!intervals.empty()) result.startCalendarInterval = StartCalendarInterval{.intervals = std::move(intervals)};
  return result;
}

void apply(AppliedRules rules, jobfile::Plist& record) {
  record.startInterval = rules.startInterval;
  record.setCalendarIntervals(std::move(rules.startCalendarInterval));
}

}  // namespace mirvel::Scheduled
