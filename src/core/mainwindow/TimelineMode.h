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

/// The table of timeline mode, as the logic sees it.
class TimelineTableType {
 public:
  TimelineTableType() = default;
  virtual ~TimelineTableType() = default;
  TimelineTableType(const TimelineTableType&) = delete;
  TimelineTableType& operator=(const TimelineTableType&) = delete;

  /// Shows the new rows. Reports no change of selection, and leaves no row marked.
  virtual void reload() = 0;
  /// Marks just this row, or none.
  virtual void mark(std::optional<std::size_t> row) = 0;
  virtual void scrollTo(std::size_t row) = 0;
};

/// What a row of the table shows.
struct TimelineCell {
  TimelineKind kind = TimelineKind::group;
  std::string time = {};  ///< of a run; empty of others
  std::string name = {};
  bool isSecondary = false;  ///< the name is in the quieter text colour
};

/// The coming runs of all jobs, by day. They are as of the last update: there is no timer. For the main thread.
class TimelineMode final : public ModeType {
 public:
  using Zone = std::function<std::string()>;

  /// Registers itself in the shell for as long as it lives. `zone` is asked for whenever the timeline is
  /// built.
  TimelineMode(const WindowContext& context, TimelineTableType& table, Zone zone = zoneOfThisMachine);
  ~TimelineMode() override;

  /// Of a job with several rows this marks the first.
  void select(const URL& url) override;
  /// Does nothing in this mode.
  void select(const std::shared_ptr<Job>&) override {}
  void update(const Jobs& jobs) override;
  void deselect() override;
  /// As in the other modes, but without the item to delete the job.
  void contextMenu(JobMenu& menu, const std::shared_ptr<Job>& job) override;

  /// The jobs whose runs are shown.
  const Jobs& content() const;
  const TimelineArray& timelineArray() const { return m_timelineArray; }
  TimelineCell cell(std::size_t row) const;
  /// A time of each hour as the cells show it, to measure the column of times.
  std::vector<std::string> sampleTimes() const;

  /// The user marked a row. Ignores one without a job.
  void selectionDidChange(std::size_t row);
  bool selectionMayChange() { return m_guard.mayChange(); }
  /// The menu for a click on a row; empty beyond the rows, on a header, and for a job without a file.
  JobMenu menuForRow(std::size_t row);
  /// The file that a drag of these rows carries: that of the first. None if the drag is refused.
  std::optional<URL> dragRows(const std::vector<std::size_t>& rows) const;

 private:
  void buildTimeline();
  std::shared_ptr<Job> jobAt(std::size_t row) const;
  std::optional<std::size_t> firstRow(const URL& url) const;

  const WindowContext& m_context;
  TimelineTableType& m_table;
  SelectionGuard m_guard;
  Zone m_zone;
  std::unique_ptr<const TimelineTexts> m_texts;  // never null; of the zone that was last built for
  mutable std::optional<Jobs> m_content;         // taken from the catalogue when first asked for
  TimelineArray m_timelineArray;
};

}  // namespace mirvel
