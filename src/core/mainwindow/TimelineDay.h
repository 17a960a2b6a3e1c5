#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace mirvel {

struct JobReport;
struct RunReport;

/// How a run is marked.
enum class RunMark : std::uint8_t { None, Running, Succeeded, Failed, Stopped, Unknown, Missed };

/// The mark of a run that has ended. `Unknown` if it isn't known how; see also `hasFailed`.
RunMark markOf(const RunReport& run);

/// A time in seconds since 1970, rounded down. It must be in the range of dates.
inline std::chrono::sys_seconds secondOf(double time) {
  return std::chrono::sys_seconds(std::chrono::seconds(static_cast<std::int64_t>(time)));
}

/// A run that has ended, or a scheduled time that a job missed.
struct PastEvent {
  double time = 0;          ///< of the run's start, or the missed time, in seconds since 1970
  std::uint32_t owner = 0;  ///< the job, as numbered by the caller
  RunMark mark = RunMark::Unknown;

  bool operator==(const PastEvent&) const = default;
};

/// Appends the events of a report that are not before `begin` and before `end`, in no particular order. Leaves out the
/// current run, test runs, and runs of which the host doesn't know the time.
void addPastEvents(const JobReport& report, std::uint32_t owner, double begin, double end,
                   std::vector<PastEvent>& events);

/// Sorts events by time; those of one moment keep their order. All times must be at least `begin` and less than `end`.
void sortPastEvents(std::vector<PastEvent>& events, double begin, double end);

/// The stretches of events that the user has unfolded. Kept by job and time, so that they survive changes of the rows.
class OpenFolds {
 public:
  /// Whether a stretch of this job's events, from `first` to `last`, is unfolded.
  bool contains(const std::string& job, double first, double last) const;
  void open(const std::string& job, double last) { m_opened.emplace(job, last); }
  void close(const std::string& job, double first, double last);
  bool isEmpty() const { return m_opened.empty(); }

 private:
  // Of each unfolded stretch its last event, because the oldest ones are forgotten first. A stretch that grows, or that
  // an event of another job splits, remains unfolded.
  std::set<std::pair<std::string, double>> m_opened;
};

/// The past of one day, in ascending order. Stretches of events of one job, with no other job between, are folded to
/// one row.
class TimelineDay {
 public:
  enum class Shape : std::uint8_t {
    Single,  ///< an event
    Folded,  ///< a stretch of events
    Open,    ///< likewise, and each event follows in a row of its own
    Nested   ///< an event of an unfolded stretch
  };
  struct Row {
    std::uint32_t first = 0;  ///< index of the event, or of the first one
    std::uint32_t count = 1;
    Shape shape = Shape::Single;
  };
  /// Whether a stretch of events of one job is unfolded.
  using IsOpen = std::function<bool(const PastEvent& first, const PastEvent& last)>;

  /// `events` must be sorted. An empty `isOpen` unfolds nothing.
  static TimelineDay folded(std::vector<PastEvent> events, const IsOpen& isOpen);

  const std::vector<PastEvent>& events() const { return m_events; }
  const std::vector<Row>& rows() const { return m_rows; }
  std::span<const PastEvent> eventsOf(const Row& row) const {
    return std::span(m_events).subspan(row.first, row.count);
  }
  /// The events after those of some owners were replaced; null if they are the same as before. `events` must be sorted.
  std::optional<std::vector<PastEvent>> merged(const std::vector<bool>& owners,
                                               std::span<const PastEvent> events) const;

  /// The row of an event; in an unfolded stretch that of the event alone, or that of the stretch. Null if there is
  /// none.
  enum class Want : std::uint8_t { Event, Stretch };
  std::optional<std::size_t> find(double time, std::uint32_t owner, Want want) const;
  /// How many rows begin before this time.
  std::size_t rowsBefore(double time) const;
  /// Whether both rows look the same, as far as can be seen from the events.
  static bool areAlike(const TimelineDay& a, std::size_t rowOfA, const TimelineDay& b, std::size_t rowOfB);

 private:
  static constexpr std::size_t fewestFolded = 3;

  std::vector<PastEvent> m_events;
  std::vector<Row> m_rows;
};

}  // namespace mirvel
