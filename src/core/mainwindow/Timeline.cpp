#include "core/mainwindow/Timeline.h"

#include <cstdint>
#include <vector>

#include "core/jobfile/Plist.h"
#include "core/mainwindow/TimelineTexts.h"
#include "core/schedule/MergedRuns.h"
#include "core/schedule/ZoneStretches.h"

namespace mirvel {

using namespace std::chrono;

namespace {

bool hasInterval(const Job& job) {
  return job.record() && job.record()->startInterval;
}

void addIntervals(const Jobs& jobs, sys_seconds now, const TimelineTexts& texts, TimelineArray& timeline) {
  bool hasHeader = false;
  for (const auto& job : jobs) {
    const auto duration = hasInterval(*job) ? texts.duration(seconds(*job->record()->startInterval)) : std::nullopt;
    if (!duration) continue;
    if (!hasHeader) timeline.addRow(now, timeline.addSource({TimelineKind::Group, texts.intervals()}));
    hasHeader = true;
    timeline.addRow(now, timeline.addSource({.kind = TimelineKind::Interval,
                                             .name = texts.interval(job->name, *duration),
                                             .isEnabled = !job->isDisabled(),
                                             .url = job->url}));
  }
}

/// The rules of all jobs, and the sources of their rows, indexed by the rules' owner numbers.
struct CalendarJobs {
  std::vector<OwnedRule> rules;
  std::vector<const TimelineSource*> owners;
};

CalendarJobs calendarJobs(const Jobs& jobs, TimelineArray& timeline) {
  CalendarJobs result;
  for (const auto& job : jobs) {
    if (!job->record() || !job->record()->startCalendarInterval) continue;
    const auto owner = static_cast<std::uint32_t>(result.owners.size());
    result.owners.push_back(&timeline.addSource(
        {.kind = TimelineKind::Time, .name = job->name, .isEnabled = !job->isDisabled(), .url = job->url}));
    for (const auto& interval : job->record()->startCalendarInterval->intervals) {
      result.rules.push_back({CalendarRule::asShown(interval), owner});
    }
  }
  return result;
}

}  // namespace

sys_seconds oneMonthAfter(sys_seconds moment, const ZoneStretches& zone) {
  const local_seconds now = zone.local(moment);
  const local_days day = floor<days>(now);
  year_month_day date = year_month_day(day) + months(1);
  if (!date.ok()) date = date.year() / date.month() / last;
  return zone.moment(local_days(date) + (now - day));
}

TimelineArray buildTimeline(const Jobs& jobs, sys_seconds now, const TimelineTexts& texts) {
  constexpr auto longestMonth = days(32);
  const ZoneStretches zone(texts.zone(), now, now + longestMonth);
  TimelineArray timeline;
  addIntervals(jobs, now, texts, timeline);
  const CalendarJobs scheduled = calendarJobs(jobs, timeline);
  const auto runs = mergedRuns(scheduled.rules, zone, now, oneMonthAfter(now, zone));

  constexpr std::size_t mostHeaders = 33;  // one for each day that a month can touch
  timeline.reserve(timeline.rows().size() + runs.size() + mostHeaders);
  const auto today = floor<days>(zone.local(now));
  local_days previous{days::min()};
  for (const OwnedRun& run : runs) {
    const auto day = floor<days>(zone.local(run.date));
    if (day != previous) {
      const std::string header = texts.day(run.date, (day - today).count());
      timeline.addRow(now, timeline.addSource({TimelineKind::Group, header}));
    }
    timeline.addRow(run.date, *scheduled.owners[run.owner]);
    previous = day;
  }
  return timeline;
}

}  // namespace mirvel
