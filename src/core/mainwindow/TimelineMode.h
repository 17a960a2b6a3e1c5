#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/base/Signal.h"
#include "core/mainwindow/ModeRules.h"
#include "core/mainwindow/Timeline.h"
#include "core/mainwindow/TimelineCell.h"
#include "core/mainwindow/TimelineTexts.h"
#include "core/ports/MainQueue.h"
#include "core/schedule/ZoneStretches.h"
#include "core/session/Mode.h"

namespace mirvel {

struct WindowContext;

/// The table of timeline mode, implemented by the shell.
class TimelineTableType {
 public:
  /// A row before and after all rows were replaced.
  struct Anchor {
    std::size_t before = 0;
    std::size_t after = 0;
  };

  TimelineTableType() = default;
  virtual ~TimelineTableType() = default;
  TimelineTableType(const TimelineTableType&) = delete;
  TimelineTableType& operator=(const TimelineTableType&) = delete;

  /// The row whose place in the view is kept when rows change: the header Now if it is in view, else the first visible
  /// row that isn't a header. None without rows.
  virtual std::optional<std::size_t> anchor() const = 0;
  /// Shows the new rows of `TimelineMode::timelineArray`, with the anchor in its place if there is one. Doesn't report
  /// a change of the selection, and marks no row.
  virtual void reload(const std::optional<Anchor>& anchor) = 0;
  /// Shows the rows that were replaced, and keeps the place of a row before them, or of `anchor()`. The mark moves with
  /// its row; a change of the selection isn't reported.
  virtual void rowsDidChange(const TimelineArray::Change& change, std::optional<std::size_t> kept) = 0;
  /// Draws the rows again whose contents may have changed.
  virtual void redraw() = 0;
  /// Marks this row alone, or none, without reporting it.
  virtual void mark(std::optional<std::size_t> row) = 0;
  virtual void scrollTo(std::size_t row) = 0;
};

/// The past and coming runs of all jobs, by day. Follows the reports about jobs and the clock while it is visible;
/// while it is hidden, it does nothing. For the main thread.
class TimelineMode final : public ModeType {
 public:
  /// Returns the name of a time zone, such as "Europe/Berlin".
  using Zone = std::function<std::string()>;

  /// Registers itself in the shell until destroyed. `context` and `table` must outlive the mode. `zone` is called
  /// whenever the timeline is built or shown, so that a change of the user's time zone takes effect.
  TimelineMode(const WindowContext& context, TimelineTableType& table, Zone zone = zoneOfThisMachine);
  ~TimelineMode() override;

  /// Marks the row that best represents the job, unless one of its rows is marked already, or has shown its menu last.
  void select(const URL& url) override;
  /// Has no effect in this mode.
  void select(const std::shared_ptr<Job>&) override {}
  void update(const Jobs& jobs) override;
  void deselect() override;
  /// Leaves out the item that deletes the job.
  void contextMenu(JobMenu& menu, const std::shared_ptr<Job>& job) override;

  /// To be called when the table is shown or hidden. It is hidden at first.
  void setVisible(bool isVisible);

  /// The jobs whose runs are shown.
  const Jobs& content() const;
  const TimelineArray& timelineArray() const { return m_timelineArray; }
  /// Empty for a row out of range.
  TimelineCell cell(std::size_t row) const;
  /// One formatted time for each hour of the day, to measure the width of the time column.
  std::vector<std::string> sampleTimes() const;
  const TimelineTexts& texts() const { return *m_texts; }
  /// The first row from `start` on, cyclically, whose job's name satisfies the test. Never a header.
  std::optional<std::size_t> firstNamed(const std::function<bool(const std::string& name)>& test,
                                        std::size_t start) const;

  /// To be called when the user has marked a row: selects its job. Ignores headers and rows out of range.
  void selectionDidChange(std::size_t row);
  /// Whether the user may mark another row now; see `SelectionGuard`.
  bool selectionMayChange() { return m_guard.mayChange(); }
  /// Folds or unfolds a stretch of runs; from one of its rows it folds it. Returns false, without effect, for other
  /// rows, and if the stretch is already as wanted.
  bool setOpen(std::size_t row, bool isOpen);
  /// The context menu of a row; empty for a header, a row out of range, and a job that hasn't been saved yet.
  JobMenu menuForRow(std::size_t row);
  /// The file to drag for these rows: that of the first one. None if the drag is refused.
  std::optional<URL> dragRows(const std::vector<std::size_t>& rows) const;

 private:
  /// The marked row, and the job that it belongs to.
  struct Marked {
    Timeline row;
    URL url;
  };

  void rebuild(const Jobs& jobs);
  void buildTimeline();
  bool isOutdated();
  void catchUp();
  void noteNextRuns();
  void noteNextRun(const JobReport* report);
  double nextChange() const;
  void arm();
  TimelineArray::DidChange didChange(std::optional<std::size_t> kept = std::nullopt);
  void runsChanged(const Jobs& jobs);
  std::vector<TimelineArray::Report> reportsOf(const Jobs& jobs);
  TimelineArray::IsOpen openTest() const;
  std::optional<TimelineTableType::Anchor> anchorAfter(const std::optional<Marked>& before, std::size_t row) const;
  std::optional<Marked> markedAt(std::size_t row) const;
  std::optional<std::size_t> rowOf(const URL& url) const;
  void restoreMark();
  std::optional<std::uint32_t> ownerOf(const URL& url) const;
  const Job* shownJobAt(std::size_t row) const;
  std::shared_ptr<Job> jobAt(std::size_t row) const;
  std::size_t stretchOf(std::size_t row) const;

  const WindowContext& m_context;
  TimelineTableType& m_table;
  SelectionGuard m_guard;
  Zone m_zone;
  Delay m_delay;
  std::unique_ptr<const TimelineTexts> m_texts;            // never null; for the zone of the last build
  mutable std::optional<Jobs> m_content;                   // copied from the catalogue on first use
  std::unordered_map<const Job*, std::uint32_t> m_owners;  // of the content; empty until it is needed
  TimelineArray m_timelineArray;
  OpenFolds m_openFolds;
  std::optional<Marked> m_marked;
  std::optional<Marked> m_menuRow;           // the row whose menu was opened last, until a job is selected
  std::chrono::sys_seconds m_shownMoment{};  // up to which coming runs were removed
  bool m_isVisible = false;
  bool m_isStale = true;                    // reports have changed while it was hidden, or nothing was built yet
  std::optional<double> m_nextIntervalRun;  // of all jobs that run in an interval; the rows show those to come
  std::optional<double> m_armedFor;         // when the pending timer fires
  std::uint64_t m_timer = 0;                // its number; earlier ones are void
  Subscription m_runsChanged;
  Subscription m_appStatusChanged;
};

}  // namespace mirvel
