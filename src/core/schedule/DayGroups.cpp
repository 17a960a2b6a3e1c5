#include "core/schedule/DayGroups.h"

#include <cstddef>
#include <map>
#include <tuple>
#include <utility>

namespace mirvel::Scheduled {

namespace {

std::size_t dayOf(const FileRule& rule) {
  return static_cast<std::size_t>(std::get<DayOfWeek>(rule.rule).day);
}

/// Equal for rules that differ only in their weekday. Invalid weekdays are shown as Sunday, but must not be merged.
auto slotOf(const FileRule& rule) {
  const auto& interval = rule.source.intervals.front();
  const bool isDay = *interval.weekday >= 0 && *interval.weekday <= 7;
  return std::tuple(interval.minute, interval.hour, interval.month, isDay ? 0 : *interval.weekday);
}

bool holdsAll(const Days& days, const Days& members) {
  return members.any() && (days & members) == members;
}

}  // namespace

std::vector<FileRule> foldDays(std::vector<FileRule> singleDays, const Week& week) {
  using Slot = decltype(slotOf(singleDays.front()));
  std::map<Slot, Days> days;
  for (const FileRule& rule : singleDays) days[slotOf(rule)].set(dayOf(rule));

  std::vector<FileRule> result;
  std::map<std::pair<Slot, int>, std::size_t> groups;  // indices in `result`
  const auto addGroup = [&](const FileRule& rule, const Days& members, int groupDay) {
    const Slot slot = slotOf(rule);
    if (!holdsAll(days[slot], members) || !groups.try_emplace({slot, groupDay}, result.size()).second) return;
    result.push_back({DayOfWeek{.day = groupDay, .time = std::get<DayOfWeek>(rule.rule).time}});
  };
  for (const FileRule& rule : singleDays) {
    addGroup(rule, week.weekdays, DayOfWeek::weekdays);
    addGroup(rule, week.weekends, DayOfWeek::weekends);
  }
  for (FileRule& rule : singleDays) {
    const int groupDay = week.weekdays.test(dayOf(rule)) ? DayOfWeek::weekdays : DayOfWeek::weekends;
    const auto group = groups.find({slotOf(rule), groupDay});
    if (group == groups.end()) {
      result.push_back(std::move(rule));
    } else {
      result[group->second].source.intervals.push_back(rule.source.intervals.front());
    }
  }
  return result;
}

}  // namespace mirvel::Scheduled
