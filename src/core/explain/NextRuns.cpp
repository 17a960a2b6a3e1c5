#include "core/explain/NextRuns.h"

#include <vector>

#include "core/explain/RuleText.h"
#include "core/schedule/ComingRuns.h"
#include "core/schedule/ScheduleTexts.h"

namespace mirvel {

using namespace std::chrono;

namespace {

struct Run {
  sys_seconds moment;
  local_days day;
};

/// The next runs and the current day, both in the user's time zone.
struct UpcomingRuns {
  local_days today;
  std::vector<Run> runs = {};
};

/// The calendar and the interval of a job.
struct Starts {
  std::vector<CalendarRule> rules = {};
  std::optional<seconds> interval = {};  ///< from now on; positive
  std::size_t count = 2;                 ///< maximum number of runs to find
};

std::vector<CalendarRule> rulesOf(const jobfile::StartCalendarInterval& calendar) {
  std::vector<CalendarRule> rules;
  for (const auto& interval : calendar.intervals) rules.push_back(CalendarRule::asRun(interval));
  return rules;
}

/// The first multiple of the interval after `after`, if the span of the zone contains it.
std::optional<sys_seconds> nextOfInterval(const Starts& starts, const ZoneStretches& zone, sys_seconds now,
                                          sys_seconds after) {
  if (!starts.interval || *starts.interval >= zone.end() - after) return std::nullopt;
  return now + ((after - now) / *starts.interval + 1) * *starts.interval;
}

UpcomingRuns upcomingRuns(days span, const Starts& starts, sys_seconds now, const std::string& zoneName) {
  const ZoneStretches zone(zoneName, now, now + span);
  const auto dayOf = [&zone](sys_seconds moment) { return floor<days>(zone.local(moment)); };
  UpcomingRuns result{dayOf(now)};
  sys_seconds after = now;
  while (result.runs.size() < starts.count) {
    auto run = firstRun(starts.rules, zone, after);
    const auto other = nextOfInterval(starts, zone, now, after);
    if (other && (!run || *other < *run)) run = other;
    if (!run) break;
    result.runs.push_back({*run, dayOf(*run)});
    after = *run;
  }
  return result;
}

UpcomingRuns upcomingRuns(const Starts& starts, sys_seconds now, const std::string& zone) {
  // Most jobs run often enough within 35 days, for which the zone's offsets are computed quickly. Around most turns of
  // a century there is no 29 February for eight years, and the one after that comes four years later.
  constexpr auto shortSpan = days(35);
  constexpr auto longSpan = days(13 * 366);
  auto result = upcomingRuns(shortSpan, starts, now, zone);
  return result.runs.size() < starts.count ? upcomingRuns(longSpan, starts, now, zone) : result;
}

std::optional<std::string> calendarText(const jobfile::Plist& record, sys_seconds now, const MomentTexts& texts) {
  if (!record.startCalendarInterval) return std::nullopt;
  const auto [today, runs] = upcomingRuns({.rules = rulesOf(*record.startCalendarInterval)}, now, texts.zone());
  if (runs.empty()) return std::nullopt;
  const auto text = [&texts, today = today](const Run& run) { return texts.text(run.moment, run.day, today); };
  if (runs.size() == 1) return ScheduleTexts(texts.localize()).nextRun(text(runs.front()));
  return ScheduleTexts(texts.localize()).nextRuns(text(runs.front()), text(runs.back()));
}

/// launchd ignores intervals that aren't positive.
std::optional<std::string> intervalText(const jobfile::Plist& record, const Localize& localize) {
  if (!record.startInterval || *record.startInterval <= 0) return std::nullopt;
  const Scheduled::ScheduledType rule = Scheduled::splitInterval(*record.startInterval);
  return ScheduleTexts(localize).fromWhenItIsLoaded(explain::ruleText(rule, localize));
}

}  // namespace

std::optional<std::string> nextRunsText(const jobfile::Plist& record, sys_seconds now, const MomentTexts& texts) {
  if (!record.startInterval && !record.startCalendarInterval) return std::nullopt;
  const auto calendar = calendarText(record, now, texts);
  const auto interval = intervalText(record, texts.localize());
  if (calendar && interval) return *calendar + '\n' + *interval;
  if (calendar || interval) return calendar ? calendar : interval;
  return ScheduleTexts(texts.localize()).itWillNeverRun();
}

std::vector<std::string> nextRunTexts(const jobfile::Plist& record, sys_seconds now, std::size_t count,
                                      const MomentTexts& texts) {
  Starts starts{.count = count};
  if (record.startCalendarInterval) starts.rules = rulesOf(*record.startCalendarInterval);
  if (record.startInterval && *record.startInterval > 0) starts.interval = seconds(*record.startInterval);
  if (starts.rules.empty() && !starts.interval) return {};
  const auto [today, runs] = upcomingRuns(starts, now, texts.zone());
  std::vector<std::string> result;
  result.reserve(runs.size());
  for (const Run& run : runs) result.push_back(texts.text(run.moment, run.day, today));
  return result;
}

}  // namespace mirvel
