#include <benchmark/benchmark.h>
#include <cctz/civil_time.h>
#include <cctz/time_zone.h>
#include <unicode/gregocal.h>
#include <unicode/timezone.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "core/schedule/ComingRuns.h"

namespace mirvel::bench {

namespace {

using namespace std::chrono;

/// A calendar rule with valid numbers; -1 means any.
struct Rule {
  int minute = 0;
  int hour = -1;
  int weekday = -1;  ///< 0 is Sunday
  int day = -1;
  int month = -1;
};

enum Form { Minute, Hour, Weekday, Day, YearDay };
constexpr std::size_t forms = 5;

constexpr const char* zoneName = "Europe/Berlin";
constexpr sys_seconds begin = sys_days(2026y / 10 / 5) + 9h + 41min + 7s;  // includes the end of daylight saving time
constexpr sys_seconds end = sys_days(2026y / 11 / 5) + 10h + 41min + 7s;

Rule makeRule(Form form, std::mt19937& random) {
  const auto number = [&random](unsigned least, unsigned greatest) {
    return static_cast<int>(least + random() % (greatest - least + 1));
  };
  Rule rule{.minute = number(0, 59)};
  if (form != Minute) rule.hour = number(0, 23);
  if (form == Weekday) rule.weekday = number(0, 6);
  if (form == Day || form == YearDay) rule.day = number(1, 31);
  if (form == YearDay) rule.month = number(1, 12);
  return rule;
}

const std::vector<Rule>& rulesOf(Form form) {
  static const auto all = [] {
    std::array<std::vector<Rule>, forms> made;
    std::mt19937 random(1);
    for (std::size_t i = 0; i < forms; ++i) {
      while (made[i].size() < 200) made[i].push_back(makeRule(static_cast<Form>(i), random));
    }
    return made;
  }();
  return all.at(form);
}

const std::vector<Rule>& mixedRules() {
  static const auto all = [] {
    std::vector<Rule> made;
    std::mt19937 random(2);
    while (made.size() < 10'000) made.push_back(makeRule(static_cast<Form>(random() % forms), random));
    return made;
  }();
  return all;
}

/// The result, which must be equal for all implementations.
struct Found {
  std::int64_t count = 0;
  std::int64_t sum = 0;

  void add(std::int64_t moment) {
    ++count;
    sum += moment;
  }
  bool operator==(const Found&) const = default;
};

Found ours(const std::vector<Rule>& rules) {
  const auto present = [](int number) { return number < 0 ? std::nullopt : std::optional<std::int64_t>(number); };
  const ZoneStretches zone(zoneName, begin, end);
  Found found;
  for (const Rule& rule : rules) {
    const auto calendarRule = CalendarRule::asShown({.minute = rule.minute,
                                                     .hour = present(rule.hour),
                                                     .day = present(rule.day),
                                                     .weekday = present(rule.weekday),
                                                     .month = present(rule.month)});
    forEachRun(calendarRule, zone, begin, end, [&](sys_seconds run) { found.add(run.time_since_epoch().count()); });
  }
  return found;
}

bool fits(const Rule& rule, int month, int day, int weekday) {
  return (rule.month < 0 || rule.month == month) && (rule.day < 0 || rule.day == day) &&
         (rule.weekday < 0 || rule.weekday == weekday);
}

/// Steps day by day with the library's civil time.
Found withCctz(const std::vector<Rule>& rules) {
  static const auto zone = [] {
    cctz::time_zone loaded;
    cctz::load_time_zone(zoneName, &loaded);
    return loaded;
  }();
  const auto lastDay = cctz::civil_day(cctz::convert(end, zone));
  Found found;
  for (const Rule& rule : rules) {
    for (auto day = cctz::civil_day(cctz::convert(begin, zone)); day <= lastDay; ++day) {
      const int weekday = (static_cast<int>(cctz::get_weekday(day)) + 1) % 7;
      if (!fits(rule, day.month(), day.day(), weekday)) continue;
      for (int hour = std::max(rule.hour, 0); hour <= (rule.hour < 0 ? 23 : rule.hour); ++hour) {
        const auto there = zone.lookup(cctz::civil_second(day.year(), day.month(), day.day(), hour, rule.minute, 0));
        if (there.kind == cctz::time_zone::civil_lookup::SKIPPED) continue;
        if (there.pre > begin && there.pre < end) found.add(there.pre.time_since_epoch().count());
      }
    }
  }
  return found;
}

/// Steps day by day with ICU's calendar.
Found withIcu(const std::vector<Rule>& rules) {
  UErrorCode status = U_ZERO_ERROR;
  icu::GregorianCalendar calendar(icu::TimeZone::createTimeZone(zoneName), status);
  calendar.setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
  const auto date = [](sys_seconds moment) { return static_cast<UDate>(moment.time_since_epoch().count()) * 1000; };
  Found found;
  for (const Rule& rule : rules) {
    calendar.setTime(date(begin), status);
    calendar.set(UCAL_MILLISECOND, 0);
    calendar.set(UCAL_SECOND, 0);
    for (calendar.set(UCAL_HOUR_OF_DAY, 12); calendar.getTime(status) < date(end) + 86'400'000;
         calendar.set(UCAL_HOUR_OF_DAY, 12), calendar.set(UCAL_MINUTE, 0), calendar.add(UCAL_DATE, 1, status)) {
      if (!fits(rule, calendar.get(UCAL_MONTH, status) + 1, calendar.get(UCAL_DATE, status),
                calendar.get(UCAL_DAY_OF_WEEK, status) - 1)) {
        continue;
      }
      for (int hour = std::max(rule.hour, 0); hour <= (rule.hour < 0 ? 23 : rule.hour); ++hour) {
        calendar.set(UCAL_HOUR_OF_DAY, hour);
        calendar.set(UCAL_MINUTE, rule.minute);
        const UDate there = calendar.getTime(status);
        if (calendar.get(UCAL_HOUR_OF_DAY, status) != hour) continue;  // in a skipped hour
        if (there > date(begin) && there < date(end)) found.add(static_cast<std::int64_t>(there / 1000));
      }
    }
  }
  return found;
}

using Way = Found (*)(const std::vector<Rule>&);

void measure(benchmark::State& state, Way way, const std::vector<Rule>& rules) {
  const Found expected = ours(rules);
  for (auto _ : state) {
    if (way(rules) != expected) state.SkipWithError("other runs were found");
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(rules.size()));
}

const bool areRegistered = [] {
  constexpr std::pair<const char*, Way> ways[] = {
      {"comingRuns/", ours}, {"comingRunsCctz/", withCctz}, {"comingRunsIcu/", withIcu}};
  constexpr std::pair<const char*, Form> named[] = {
      {"minute", Minute}, {"hour", Hour}, {"weekday", Weekday}, {"day", Day}, {"yearDay", YearDay}};
  for (const auto& [prefix, way] : ways) {
    for (const auto& [name, form] : named) {
      benchmark::RegisterBenchmark((std::string(prefix) + name).c_str(), [way = way, form = form](auto& state) {
        measure(state, way, rulesOf(form));
      })->Unit(benchmark::kMicrosecond);
    }
    benchmark::RegisterBenchmark((std::string(prefix) + "mixed").c_str(), [way = way](auto& state) {
      measure(state, way, mixedRules());
    })->Unit(benchmark::kMicrosecond);
  }
  return true;
}();

}  // namespace

}  // namespace mirvel::bench
