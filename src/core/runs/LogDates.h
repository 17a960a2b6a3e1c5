#pragma once

#include <memory>
#include <string>

namespace mirvel {

/// Formats the times of log lines: short date, in words for today and yesterday, and time with seconds. Slow to
/// construct. Not thread-safe.
class LogDates {
 public:
  /// `locale` is that for dates and times. `zone` is a name such as "Europe/Berlin"; unknown names count as GMT.
  LogDates(const std::string& locale, const std::string& zone);
  ~LogDates();
  LogDates(const LogDates&) = delete;
  LogDates& operator=(const LogDates&) = delete;

  /// The text for a moment in seconds since 1970; empty if ICU has no data.
  std::string text(double seconds) const;

 private:
  struct Format;
  std::unique_ptr<const Format> m_format;
};

}  // namespace mirvel
