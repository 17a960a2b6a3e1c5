#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "core/files/URL.h"

namespace mirvel {

enum class TimelineKind : std::uint8_t { group = 0, time = 1, interval = 2 };

/// What all rows of one kind and job have in common. A header stands for itself.
struct TimelineSource {
  TimelineKind kind;
  std::string name;             ///< of the job; with the interval's text; or the header
  bool isEnabled = true;        ///< if not, the name is in the quieter text colour
  std::optional<URL> url = {};  ///< of the job; a header has none
};

/// A row of the timeline. There may be hundreds of thousands, so it is only a moment and a reference.
class Timeline {
 public:
  /// The source must outlive the row.
  Timeline(std::chrono::sys_seconds date, const TimelineSource& source) : m_date(date), m_source(&source) {}

  /// The run; of others than `TimelineKind::time` the moment when the timeline was built.
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

/// The rows, with what they refer to.
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
  /// The rows that are headers, ascending.
  const std::vector<std::size_t>& groups() const { return m_groups; }

  void reserve(std::size_t rows) { m_rows.reserve(rows); }
  /// Stays where it is for as long as the array lives.
  const TimelineSource& addSource(TimelineSource source) { return m_sources.emplace_back(std::move(source)); }
  void addRow(std::chrono::sys_seconds date, const TimelineSource& source) {
    if (source.kind == TimelineKind::group) m_groups.push_back(m_rows.size());
    m_rows.emplace_back(date, source);
  }

 private:
  std::deque<TimelineSource> m_sources;
  std::vector<Timeline> m_rows;
  std::vector<std::size_t> m_groups;
};

}  // namespace mirvel
