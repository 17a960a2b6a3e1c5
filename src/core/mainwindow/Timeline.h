#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/catalogue/Job.h"
#include "core/mainwindow/TimelineDay.h"
#include "core/schedule/MergedRuns.h"

namespace mirvel {

struct JobReport;
class TimelineTexts;
class ZoneStretches;

/// The kinds of rows.
enum class TimelineKind : std::uint8_t {
  Group = 0,     ///< a header
  Time = 1,      ///< a coming run by the calendar
  Interval = 2,  ///< a job that runs in an interval, without the time of a run
  Now = 3,       ///< the header that separates the past from what runs and will run
  Running = 4,   ///< a run that hasn't ended
  Ended = 5,     ///< a run that has
  Missed = 6,    ///< a scheduled time at which the job didn't run
  Fold = 7       ///< a stretch of ended and missed runs of one job
};

/// A row of the timeline. Made on demand, since there may be a million; valid until the array changes.
struct Timeline {
  static constexpr std::uint32_t nobody = ~0U;

  TimelineKind kind = TimelineKind::Group;
  /// Seconds since 1970: of the run or the missed time, of a stretch the last one; 0 in other rows, and for a running
  /// job if its host doesn't know when it was started.
  double time = 0;
  std::uint32_t owner = nobody;            ///< the index of the job; none in headers
  std::string_view header = {};            ///< the text of a header
  std::span<const PastEvent> events = {};  ///< of a row of the past
  bool isOpen = false;                     ///< a stretch: each of its runs follows in a row of its own
  bool isNested = false;                   ///< one of these rows

  bool isHeader() const { return kind == TimelineKind::Group || kind == TimelineKind::Now; }
  std::chrono::sys_seconds date() const { return secondOf(time); }
};

/// The rows of the timeline, in this order: the days of the past, each under a header; the header Now and what runs;
/// the jobs that run in an interval, under one header; the coming runs by the calendar, under a header for each day.
/// All parts but the rows themselves are few, so that finding a row is cheap.
class TimelineArray {
 public:
  using ReportOf = std::function<const JobReport*(const Job& job)>;
  /// Whether a stretch of events of one job is unfolded.
  using IsOpen = TimelineDay::IsOpen;
  struct Report {
    std::uint32_t owner = 0;
    const JobReport* report = nullptr;  ///< null if nothing is known of the job any more
  };
  /// A place where rows were replaced.
  struct Change {
    std::size_t first = 0;
    std::size_t removed = 0;
    std::size_t inserted = 0;

    bool operator==(const Change&) const = default;
  };
  /// Called after each change of rows, while the array is consistent.
  using DidChange = std::function<void(const Change&)>;

  TimelineArray() = default;
  /// The past month, by days of the zone of `texts`, and the coming month from `now`, according to the records in
  /// memory. Owners are the indices of `jobs`. Disabled jobs are included. `reportOf` and `isOpen` may be empty.
  TimelineArray(const Jobs& jobs, const ReportOf& reportOf, std::chrono::sys_seconds now, const TimelineTexts& texts,
                const IsOpen& isOpen);

  std::size_t count() const { return m_tops.back(); }
  /// `row` must be less than `count`.
  Timeline row(std::size_t row) const;
  /// The indices of all headers, ascending.
  std::vector<std::size_t> groups() const;
  /// The row of the header Now, which isn't shown without a past and without anything that runs.
  std::optional<std::size_t> now() const;
  /// The row that best represents a job: what it does now, else the first that comes, else its last one.
  std::optional<std::size_t> rowOf(std::uint32_t owner) const;
  /// The row with the same event, also after rows have changed. A run that has ended since is found, too.
  std::optional<std::size_t> find(const Timeline& row) const;
  /// The first row of the same part of the timeline that isn't earlier than this one, or the last row if there is none.
  /// There must be rows.
  std::size_t nearest(const Timeline& row) const;
  /// The owners of the rows of intervals, ascending.
  const std::vector<std::uint32_t>& intervals() const { return m_intervals; }
  /// The first row from `start` on, and then from the beginning on, that belongs to one of these owners.
  std::optional<std::size_t> firstOf(const std::vector<bool>& owners, std::size_t start) const;

  /// When the first coming run is due, or the day ends. After the end of the day the array must be built again.
  std::chrono::sys_seconds nextChange() const;
  std::chrono::sys_seconds endOfDay() const { return m_endOfDay; }
  /// Whether a time, in seconds since 1970, is on the day on which the array was built.
  bool isToday(double time) const;
  /// Removes the coming runs that are due.
  void advance(std::chrono::sys_seconds now, const DidChange& didChange);
  /// Replaces what is known of some jobs, at most one report for each.
  void setReports(std::span<const Report> reports, const IsOpen& isOpen, const DidChange& didChange);
  /// To be called when the row, a stretch of events, was folded or unfolded.
  void refold(std::size_t row, const IsOpen& isOpen, const DidChange& didChange);

 private:
  struct PastDay {
    double begin = 0;
    std::string header;
    TimelineDay day = {};
  };
  struct Running {
    double start = 0;
    std::uint32_t owner = 0;
    bool operator==(const Running&) const = default;
  };
  struct ComingDay {
    std::size_t end = 0;  ///< in `m_coming`
    std::string header;
  };

  // Sections, by index: the days of the past, then these two, then the coming days.
  std::size_t nowSection() const { return m_past.size(); }
  std::size_t intervalSection() const { return m_past.size() + 1; }
  std::size_t firstComingSection() const { return m_past.size() + 2; }
  std::size_t sectionOf(std::size_t row) const;
  std::size_t rowsIn(std::size_t section) const;
  std::size_t comingBegin(std::size_t section) const;
  const std::string& headerOf(std::size_t section) const;
  Timeline contentOf(std::size_t section, std::size_t index) const;
  void countRows();

  void addPastDays(std::chrono::sys_seconds now, const ZoneStretches& zone, const TimelineTexts& texts);
  void fillPast(std::vector<PastEvent> events, const IsOpen& isOpen);
  void addComing(const Jobs& jobs, std::chrono::sys_seconds now, const ZoneStretches& zone, const TimelineTexts& texts);
  double beginOfPast() const { return m_past.front().begin; }
  double endOfPast() const;
  std::vector<PastEvent> eventsOf(std::span<const Report> reports) const;
  void addRunning(const Report& report, std::vector<Running>& running) const;
  std::optional<std::size_t> sectionOfDay(double time) const;
  std::size_t rowOfComing(std::size_t index) const;
  std::size_t firstComingFrom(double time) const;
  std::optional<std::size_t> findPast(const Timeline& row) const;
  std::optional<std::size_t> findRunning(const Timeline& row) const;
  std::optional<std::size_t> findComing(const Timeline& row) const;
  std::optional<std::size_t> lastPastOf(std::uint32_t owner) const;
  void replaceDay(std::size_t section, TimelineDay day, const DidChange& didChange);
  void replaceRunning(std::vector<Running> running, const DidChange& didChange);

  std::vector<PastDay> m_past;
  std::vector<Running> m_running;  // by start
  std::vector<std::uint32_t> m_intervals;
  std::vector<OwnedRun> m_coming;
  std::size_t m_firstComing = 0;  // those before it are over
  std::vector<ComingDay> m_comingDays;
  std::string m_nowHeader, m_intervalHeader;
  bool m_showsNow = false;
  std::size_t m_jobCount = 0;
  std::chrono::sys_seconds m_endOfDay{};
  std::vector<std::size_t> m_tops{0};  // the first row of each section, and the number of rows
};

/// The same local time one month later; in a month that is too short, on its last day. `zone` must cover the 32 days
/// that begin with `moment`.
std::chrono::sys_seconds oneMonthAfter(std::chrono::sys_seconds moment, const ZoneStretches& zone);

}  // namespace mirvel
