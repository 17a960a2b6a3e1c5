#include "core/schedule/DayGroups.h"

#include <cstddef>
#include <map>

namespace mirvel::Scheduled {

namespace {

/// What there is at one time of day.
struct Slot {
  Days days;     // with a rule
  Days grouped;  // of these, told by a group
  bool isFolded = false;
};

bool holdsAll(const Days& days, const Days& members) {
  return members.any() && (days & members) == members;
}

void foldSlot(Slot& slot, Time time, const Week& week, std::vector<DayOfWeek>& result) {
  const auto addGroup = [&](const Days& members, int groupDay) {
    if (!holdsAll(slot.days, members)) return;
    result.push_back({.day = groupDay, .time = time});
    slot.grouped |= members;
  };
  addGroup(week.weekdays, DayOfWeek::weekdays);
  addGroup(week.weekends, DayOfWeek::weekends);
  slot.isFolded = true;
}

}  // namespace

std::vector<DayOfWeek> foldDays(const std::vector<DayOfWeek>& singleDays, const Week& week) {
  std::map<Time, Slot> slots;
  for (const DayOfWeek& rule : singleDays) slots[rule.time].days.set(static_cast<std::size_t>(rule.day));

  std::vector<DayOfWeek> result;
  for (const DayOfWeek& rule : singleDays) {
    Slot& slot = slots[rule.time];
    if (!slot.isFolded) foldSlot(slot, rule.time, week, result);
  }
  for (const DayOfWeek& rule : singleDays) {
    if (!slots[rule.time].grouped.test(static_cast<std::size_t>(rule.day))) result.push_back(rule);
  }
  return result;
}

}  // namespace mirvel::Scheduled
