#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/locale/Localize.h"
#include "core/mainwindow/TimelineDay.h"
#include "core/messages/JobReport.h"

namespace mirvel {

/// The texts of the timeline, for a language and a time zone. Expensive to construct, cheap to use. Not thread-safe.
class TimelineTexts {
 public:
  /// `localize` must outlive this object. `zone` is a name such as "Europe/Berlin"; an unknown one counts as UTC.
  TimelineTexts(const Localize& localize, std::string zone);
  ~TimelineTexts();
  TimelineTexts(const TimelineTexts&) = delete;
  TimelineTexts& operator=(const TimelineTexts&) = delete;

  const std::string& zone() const { return m_zone; }

  /// The texts that don't depend on the zone.
  const Localize& localize() const { return m_localize; }

  /// The header of a day: "Today", "Tomorrow", "Yesterday", others "Sunday, November 22, 2026". Some languages have
  /// words for the days next to these, too. `daysAhead` is the distance of the day from today.
  std::string day(std::chrono::sys_seconds moment, std::int64_t daysAhead) const;
  /// The header of a day of the past: "Earlier Today", "Yesterday".
  std::string pastDay(std::chrono::sys_seconds moment, std::int64_t daysAgo) const;
  /// "Nov 22, 2026, 9:00 AM"
  std::string dateAndTime(std::chrono::sys_seconds moment) const;
  /// The local time of day: "9:00 AM".
  std::string time(std::chrono::sys_seconds moment) const;
  /// A duration in hours, minutes and seconds: "1 hour, 30 minutes". None if ICU can't format it.
  std::optional<std::string> duration(std::chrono::seconds length) const;
  /// The name of a job with its interval: "backup – 1 hour, 30 minutes".
  std::string interval(const std::string& name, const std::string& duration) const;
  /// Facts about one row, in this order: "2 s · exit code 1".
  std::string joined(const std::vector<std::string>& facts) const;
  /// How a run ended, in a few words: "exit code 1".
  std::string ending(const RunReport& run) const;
  /// How long a run took; none if that isn't known, or it wasn't started.
  std::optional<std::string> duration(const RunReport& run) const;
  /// "missed, because the computer slept"
  std::string missed(MissedRun::Why why) const;
  /// A stretch of runs and missed times: "14 runs, 9:00 AM – 9:13 AM · 1 failed".
  std::string stretch(std::span<const PastEvent> events) const;
  std::string running() const { return m_localize.text("running"); }
  std::string runningSince(const std::string& moment) const { return m_localize.format("running since %@", {moment}); }
  std::string stopping() const { return m_localize.text("is being stopped"); }
  std::string nextRun(const std::string& moment) const { return m_localize.format("next run %@", {moment}); }
  std::string foldRuns() const { return m_localize.text("Fold Runs"); }
  std::string showEachRun() const { return m_localize.text("Show Each Run"); }
  /// For assistive technology: what the arrow keys do with a stretch.
  std::string theRightArrowKeyShowsEachRun() const { return m_localize.text("The right arrow key shows each run."); }
  std::string theLeftArrowKeyFoldsTheRuns() const { return m_localize.text("The left arrow key folds the runs."); }

  /// The header between the past and what runs now.
  std::string now() const { return m_localize.text("Now"); }
  /// The header of the jobs that run in an interval.
  std::string intervals() const { return m_localize.repeatInterval(); }

 private:
  struct Formats;

  const Localize& m_localize;
  const std::string m_zone;
  std::unique_ptr<const Formats> m_formats;
};

}  // namespace mirvel
