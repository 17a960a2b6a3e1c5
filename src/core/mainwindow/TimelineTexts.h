#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "core/locale/Localize.h"

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

  /// The header of a day: "Today", "Tomorrow", later ones "Sunday, November 22, 2026". In some languages the day after
  /// tomorrow has a word, too. `daysAhead` is the distance of the day from today.
  std::string day(std::chrono::sys_seconds moment, std::int64_t daysAhead) const;
  /// The local time of day: "9:00 AM".
  std::string time(std::chrono::sys_seconds moment) const;
  /// A duration in hours, minutes and seconds: "1 hour, 30 minutes". None if ICU can't format it.
  std::optional<std::string> duration(std::chrono::seconds length) const;
  /// The name of a job with its interval: "backup – 1 hour, 30 minutes".
  std::string interval(const std::string& name, const std::string& duration) const;
  /// The header of the jobs that run in an interval.
  std::string intervals() const { return m_localize.repeatInterval(); }

 private:
  struct Formats;

  const Localize& m_localize;
  const std::string m_zone;
  std::unique_ptr<const Formats> m_formats;
};

}  // namespace mirvel
