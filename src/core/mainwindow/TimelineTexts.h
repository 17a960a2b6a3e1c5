#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "core/locale/Localize.h"

namespace mirvel {

/// The texts of the timeline as a language and a time zone have them. Slow to make, quick to ask; for one thread.
class TimelineTexts {
 public:
  /// `localize` outlives it. `zone` is a name such as "Europe/Berlin"; one that isn't known counts as UTC.
  TimelineTexts(const Localize& localize, std::string zone);
  ~TimelineTexts();
  TimelineTexts(const TimelineTexts&) = delete;
  TimelineTexts& operator=(const TimelineTexts&) = delete;

  const std::string& zone() const { return m_zone; }

  /// The header of a day: "Today", "Tomorrow", and otherwise "Sunday, November 22, 2026". `daysAhead` counts from the
  /// day that it is now.
  std::string day(std::chrono::sys_seconds moment, std::int64_t daysAhead) const;
  /// "9:00 AM".
  std::string time(std::chrono::sys_seconds moment) const;
  /// "1 hour, 30 minutes". None if the language has no text for it.
  std::optional<std::string> duration(std::chrono::seconds length) const;
  /// A job that runs in an interval: "backup – 1 hour, 30 minutes".
  std::string interval(const std::string& name, const std::string& duration) const;
  /// The header of the jobs that run in intervals.
  std::string intervals() const { return m_localize.repeatInterval(); }

 private:
  struct Formats;

  const Localize& m_localize;
  const std::string m_zone;
  std::unique_ptr<const Formats> m_formats;
};

}  // namespace mirvel
