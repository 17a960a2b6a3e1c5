#include "core/schedule/NextRuns.h"

#include <vector>

#include "core/explain/RuleText.h"
#include "core/schedule/ComingRuns.h"

namespace mirvel {

using namespace std::chrono;

namespace {

struct Run {
  sys_seconds moment;
  local_days day;
};

/// The next runs, two at most, and the day that it is now.
struct Outlook {
  local_days today;
  std::vector<Run> runs = {};
};

Outlook outlook(days span, const std::vector<CalendarRule>& rules, sys_seconds now, const std::string& zoneName) {
  const ZoneStretches zone(zoneName, now, now + span);
  const auto dayOf = [&zone](sys_seconds moment) { return floor<days>(zone.local(moment)); };
  Outlook result{dayOf(now)};
  sys_seconds after = now;
  while (result.runs.size() < 2) {
    const auto run = firstRun(rules, zone, after);
    if (!run) break;
    result.runs.push_back({*run, dayOf(*run)});
    after = *run;
  }
  return result;
}

Outlook outlook(const launchd::StartCalendarInterval& calendar, sys_seconds now, const std::string& zone) {
  // Most jobs run twice in so short a time, for which a zone is quickly read. The 29 February is missing for eight
  // years about most turns of a century, and comes again after four.
  constexpr auto shortSpan = days(35);
  constexpr auto longSpan = days(13 * 366);
  std::vector<CalendarRule> rules;
  for (const auto& interval : calendar.intervals) rules.push_back(CalendarRule::asRun(interval));
  auto result = outlook(shortSpan, rules, now, zone);
  return result.runs.size() < 2 ? outlook(longSpan, rules, now, zone) : result;
}

std::optional<std::string> calendarText(const launchd::Plist& record, sys_seconds now, const MomentTexts& texts) {
  if (!record.startCalendarInterval) return std::nullopt;
  const auto [today, runs] = outlook(*record.startCalendarInterval, now, texts.zone());
  if (runs.empty()) return std::nullopt;
  const auto text = [&texts, today = today](const Run& run) { return texts.text(run.moment, run.day, today); };
  if (runs.size() == 1) return texts.localize().nextRun(text(runs.front()));
  return texts.localize().nextRuns(text(runs.front()), text(runs.back()));
}

/// launchd takes no account of an interval that isn't positive.
std::optional<std::string> intervalText(const launchd::Plist& record, const Localize& localize) {
  if (!record.startInterval || *record.startInterval <= 0) return std::nullopt;
  const Scheduled::ScheduledType rule = Scheduled::splitInterval(*record.startInterval);
  return localize.fromWhenItIsLoaded(explain::ruleText(rule, localize));
}

}  // namespace

std::optional<std::string> nextRunsText(const launchd::Plist& record, sys_seconds now, const MomentTexts& texts) {
  if (!record.startInterval && !record.startCalendarInterval) return std::nullopt;
  const auto calendar = calendarText(record, now, texts);
  const auto interval = intervalText(record, texts.localize());
  if (calendar && interval) return *calendar + '\n' + *interval;
  if (calendar || interval) return calendar ? calendar : interval;
  return texts.localize().itWillNeverRun();
}

}  // namespace mirvel
