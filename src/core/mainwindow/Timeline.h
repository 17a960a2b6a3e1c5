#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "core/catalogue/Job.h"

namespace mirvel {

class TimelineTexts;
class ZoneStretches;

/// The kinds of rows.
enum class TimelineKind : std::uint8_t {
  Group = 0,     ///< a header
  Time = 1,      ///< one run by the calendar
  Interval = 2,  ///< a job that runs in an interval, without the time of a run
};

/// The data that all rows of one job and kind share. Each header has one of its own.
struct TimelineSource {
  TimelineKind kind;
  std::string name;             ///< the job's name, with the interval if it has one; or the text of the header
  bool isEnabled = true;        ///< false: the name is shown in the secondary colour
  std::optional<URL> url = {};  ///< the job's file; none for a header
};

/// A row of the timeline. There may be hundreds of thousands, so a row is only a moment and a reference.
class Timeline {
 public:
  /// The source must outlive the row.
  Timeline(std::chrono::sys_seconds date, const TimelineSource& source) : m_date(date), m_source(&source) {}

  /// The moment of the run; in rows other than `TimelineKind::Time` the moment at which the timeline was built.
  std::chrono::sys_seconds date() const { return m_date; }
  TimelineKind kind() const { return m_source->kind; }
  const std::string& name() const { return m_source->name; }
  bool isEnabled() const { return m_source->isEnabled; }
  const std::optional<URL>& url() const { return m_source->url; }
  const TimelineSource& source() const { return *m_source; }

 private:
  std::chrono::sys_seconds m_date;
  const TimelineSource* m_source;
};

/// The rows of the timeline, and the sources that they refer to. Moving it keeps all references valid.
class TimelineArray {
 public:
  TimelineArray() = default;
  ~TimelineArray() = default;
  TimelineArray(TimelineArray&&) noexcept = default;
  TimelineArray& operator=(TimelineArray&&) noexcept = default;
  TimelineArray(const TimelineArray&) = delete;
  TimelineArray& operator=(const TimelineArray&) = delete;

  const std::vector<Timeline>& rows() const { return m_rows; }
  const std::deque<TimelineSource>& sources() const { return m_sources; }
  /// The indices of the headers in `rows`, ascending.
  const std::vector<std::size_t>& groups() const { return m_groups; }

  void reserve(std::size_t rows) { m_rows.reserve(rows); }
  /// The result is valid as long as the array.
  const TimelineSource& addSource(TimelineSource source) { return m_sources.emplace_back(std::move(source)); }
  /// `source` must be one of this array.
  void addRow(std::chrono::sys_seconds date, const TimelineSource& source) {
    if (source.kind == TimelineKind::Group) m_groups.push_back(m_rows.size());
    m_rows.emplace_back(date, source);
  }

 private:
  std::deque<TimelineSource> m_sources;
  std::vector<Timeline> m_rows;
  std::vector<std::size_t> m_groups;
};

/// The coming runs of the jobs within a month from `now`, according to the records in memory: first the jobs that run
/// in an interval, in the order of `jobs` and under one header; then all runs by the calendar in ascending order, under
/// a header for each day of the zone of `texts`. Disabled jobs are included.
TimelineArray buildTimeline(const Jobs& jobs, std::chrono::sys_seconds now, const TimelineTexts& texts);

/// The same local time one month later; in a month that is too short, on its last day. `zone` must cover the 32 days
/// that begin with `moment`.
std::chrono::sys_seconds oneMonthAfter(std::chrono::sys_seconds moment, const ZoneStretches& zone);

}  // namespace mirvel
