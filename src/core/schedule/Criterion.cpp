#include "core/schedule/Criterion.h"

#include "core/locale/Dates.h"

namespace mirvel {

namespace {

template <typename Names>
Criteria named(const Names& names, const Criteria& children) {
  Criteria result;
  for (const std::string& name : names) result.push_back(std::make_shared<Criterion>(name, children));
  return result;
}

Criteria daysOfMonth(const Criteria& children, const Localize& localize) {
  std::vector<std::string> names;
  for (int day = 1; day <= 31; ++day) names.push_back(localize.int_(day));
  return named(names, children);
}

}  // namespace

Criteria makeCriteria(const Scheduled::Texts& texts, const Localize& localize) {
  using Scheduled::Kind;
  constexpr int repeats = 30;   // a plausible number in any unit, and valid in all of them
  constexpr int startHour = 9;  // when most computers are running
  const Criteria number{std::make_shared<RepeatIntervalCriterion>(localize.int_(repeats))};
  const Criteria minute{std::make_shared<EveryHourCriterion>(localize.int_(0), localize.lowercase().minute())};
  const Criteria time{std::make_shared<DatePickerCriterion>(Date::timeOfDay(startHour, 0))};

  Criteria weekdays = named(texts.dayNames, time);
  weekdays.push_back(std::make_shared<Criterion>(texts.weekdays, time));
  weekdays.push_back(std::make_shared<Criterion>(texts.weekends, time));
  const Criteria days = daysOfMonth(time, localize);
  return {
      std::make_shared<Criterion>(texts.of(Kind::repeatInterval), named(texts.units, number)),
      std::make_shared<Criterion>(texts.of(Kind::everyHour), minute),
      std::make_shared<Criterion>(texts.of(Kind::everyDay), time),
      std::make_shared<Criterion>(texts.of(Kind::dayOfWeek), std::move(weekdays)),
      std::make_shared<Criterion>(texts.of(Kind::dayOfMonth), days),
      std::make_shared<Criterion>(texts.of(Kind::dayOfYear), named(texts.monthNames, days)),
  };
}

Criteria completed(Criteria path) {
  while (!path.empty() && !path.back()->children().empty()) path.push_back(path.back()->children().front());
  return path;
}

}  // namespace mirvel
