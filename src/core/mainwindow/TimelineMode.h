#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/mainwindow/ModeRules.h"
#include "core/mainwindow/Timeline.h"
#include "core/mainwindow/TimelineTexts.h"
#include "core/schedule/ZoneStretches.h"
#include "core/session/Mode.h"

namespace mirvel {

struct WindowContext;

/// The table of timeline mode, implemented by the shell.
class TimelineTableType {
 public:
  TimelineTableType() = default;
  virtual ~TimelineTableType() = default;
  TimelineTableType(const TimelineTableType&) = delete;
  TimelineTableType& operator=(const TimelineTableType&) = delete;

  /// Shows the new rows of `TimelineMode::timelineArray`. Doesn't report a change of the selection, and marks no row.
  virtual void reload() = 0;
  /// Marks this row alone, or none, without reporting it.
  virtual void mark(std::optional<std::size_t> row) = 0;
  virtual void scrollTo(std::size_t row) = 0;
};

/// The contents of a row of the table.
struct TimelineCell {
  TimelineKind kind = TimelineKind::Group;
  std::string time = {};  ///< of a run; empty in other rows
  std::string name = {};
  bool isSecondary = false;  ///< the name is drawn in the secondary text colour
};

/// The coming runs of all jobs, by day. Computed by `update` only; there is no timer. For the main thread.
class TimelineMode final : public ModeType {
 public:
  /// Returns the name of a time zone, such as "Europe/Berlin".
  using Zone = std::function<std::string()>;

  /// Registers itself in the shell until destroyed. `context` and `table` must outlive the mode. `zone` is called
  /// whenever the timeline is built, so that a change of the user's time zone takes effect.
  TimelineMode(const WindowContext& context, TimelineTableType& table, Zone zone = zoneOfThisMachine);
  ~TimelineMode() override;

  /// Marks the first row of the job.
  void select(const URL& url) override;
  /// Has no effect in this mode.
  void select(const std::shared_ptr<Job>&) override {}
  void update(const Jobs& jobs) override;
  void deselect() override;
  /// Leaves out the item that deletes the job.
  void contextMenu(JobMenu& menu, const std::shared_ptr<Job>& job) override;

  /// The jobs whose runs are shown.
  const Jobs& content() const;
  const TimelineArray& timelineArray() const { return m_timelineArray; }
  /// Empty for a row out of range.
  TimelineCell cell(std::size_t row) const;
  /// One formatted time for each hour of the day, to measure the width of the time column.
  std::vector<std::string> sampleTimes() const;

  /// To be called when the user has marked a row: selects its job. Ignores headers and rows out of range.
  void selectionDidChange(std::size_t row);
  /// Whether the user may mark another row now; see `SelectionGuard`.
  bool selectionMayChange() { return m_guard.mayChange(); }
  /// The context menu of a row; empty for a header, a row out of range, and a job that hasn't been saved yet.
  JobMenu menuForRow(std::size_t row);
  /// The file to drag for these rows: that of the first one. None if the drag is refused.
  std::optional<URL> dragRows(const std::vector<std::size_t>& rows) const;

 private:
  void buildTimeline();
  std::shared_ptr<Job> jobAt(std::size_t row) const;
  std::optional<std::size_t> firstRow(const URL& url) const;

  const WindowContext& m_context;
  TimelineTableType& m_table;
  SelectionGuard m_guard;
  Zone m_zone;
  std::unique_ptr<const TimelineTexts> m_texts;  // never null; for the zone of the last build
  mutable std::optional<Jobs> m_content;         // copied from the catalogue on first use
  TimelineArray m_timelineArray;
};

}  // namespace mirvel
