#include "core/mainwindow/TimelineDay.h"

#include <algorithm>
#include <iterator>

#include "core/base/RadixSort.h"
#include "core/messages/JobReport.h"

namespace mirvel {

namespace {

bool isEarlier(const PastEvent& a, const PastEvent& b) {
  return a.time < b.time;
}

}  // namespace

RunMark markOf(const RunReport& run) {
  if (!run.end) return RunMark::Unknown;
  if (hasFailed(run)) return RunMark::Failed;
  if (run.end->isStopped) return RunMark::Stopped;
  return run.end->how == RunEnd::How::Exited ? RunMark::Succeeded : RunMark::Unknown;
}

void addPastEvents(const JobReport& report, std::uint32_t owner, double begin, double end,
                   std::vector<PastEvent>& events) {
  if (report.isTest) return;
  // Also false for times that aren't numbers.
  const auto isWithin = [=](double time) { return time >= begin && time < end; };
  for (const RunReport& run : report.runs) {
    const bool isCurrent = report.process > 0 && !run.end && &run == &report.runs.back();
    if (isCurrent || run.cause == RunCause::Test || !isWithin(run.start)) continue;
    events.push_back({.time = run.start, .owner = owner, .mark = markOf(run)});
  }
  for (const MissedRun& missed : report.missed) {
    if (isWithin(missed.time)) events.push_back({.time = missed.time, .owner = owner, .mark = RunMark::Missed});
  }
}

void sortPastEvents(std::vector<PastEvent>& events, double begin, double end) {
  constexpr std::size_t few = 1000;
  if (events.size() < few) {
    std::stable_sort(events.begin(), events.end(), isEarlier);
    return;
  }
  const auto second = [begin](const PastEvent& event) { return static_cast<std::uint64_t>(event.time - begin); };
  radixSort(events, static_cast<std::uint64_t>(end - begin), second);
  for (auto first = events.begin(); first != events.end();) {
    const auto last =
        std::find_if(first, events.end(), [&](const auto& event) { return second(event) != second(*first); });
    if (last - first > 1) std::stable_sort(first, last, isEarlier);
    first = last;
  }
}

bool OpenFolds::contains(const std::string& job, double first, double last) const {
  if (m_opened.empty()) return false;
  const auto found = m_opened.lower_bound({job, first});
  return found != m_opened.end() && found->first == job && found->second <= last;
}

void OpenFolds::close(const std::string& job, double first, double last) {
  m_opened.erase(m_opened.lower_bound({job, first}), m_opened.upper_bound({job, last}));
}

TimelineDay TimelineDay::folded(std::vector<PastEvent> events, const IsOpen& isOpen) {
  TimelineDay day;
  day.m_rows.reserve(events.size());
  const auto count = static_cast<std::uint32_t>(events.size());
  for (std::uint32_t first = 0, end = 0; first < count; first = end) {
    for (end = first + 1; end < count && events[end].owner == events[first].owner;) ++end;
    const bool isFolded = end - first >= fewestFolded;
    const bool isUnfolded = isFolded && isOpen && isOpen(events[first], events[end - 1]);
    if (isFolded) day.m_rows.push_back({first, end - first, isUnfolded ? Shape::Open : Shape::Folded});
    if (isFolded && !isUnfolded) continue;
    for (std::uint32_t at = first; at < end; ++at) {
      day.m_rows.push_back({at, 1, isUnfolded ? Shape::Nested : Shape::Single});
    }
  }
  day.m_events = std::move(events);
  return day;
}

std::optional<std::vector<PastEvent>> TimelineDay::merged(const std::vector<bool>& owners,
                                                          std::span<const PastEvent> events) const {
  auto next = events.begin();
  bool isSame = true;
  for (const PastEvent& event : m_events) {
    if (owners[event.owner]) isSame = isSame && next != events.end() && *next++ == event;
  }
  if (isSame && next == events.end()) return std::nullopt;
  std::vector<PastEvent> kept, result;
  kept.reserve(m_events.size());
  std::copy_if(m_events.begin(), m_events.end(), std::back_inserter(kept),
               [&](const PastEvent& event) { return !owners[event.owner]; });
  result.reserve(kept.size() + events.size());
  std::merge(kept.begin(), kept.end(), events.begin(), events.end(), std::back_inserter(result), isEarlier);
  return result;
}

std::optional<std::size_t> TimelineDay::find(double time, std::uint32_t owner, Want want) const {
  auto event = std::lower_bound(m_events.begin(), m_events.end(), PastEvent{.time = time}, isEarlier);
  while (event != m_events.end() && event->time == time && event->owner != owner) ++event;
  if (event == m_events.end() || event->time != time) return std::nullopt;
  const auto isAfter = [](std::size_t at, const Row& row) { return at < row.first; };
  auto row =
      std::upper_bound(m_rows.begin(), m_rows.end(), static_cast<std::size_t>(event - m_events.begin()), isAfter);
  --row;
  while (want == Want::Stretch && row->shape == Shape::Nested) --row;
  return static_cast<std::size_t>(row - m_rows.begin());
}

std::size_t TimelineDay::rowsBefore(double time) const {
  const auto begins = [this](const Row& row, double at) { return m_events[row.first].time < at; };
  return static_cast<std::size_t>(std::lower_bound(m_rows.begin(), m_rows.end(), time, begins) - m_rows.begin());
}

bool TimelineDay::areAlike(const TimelineDay& a, std::size_t rowOfA, const TimelineDay& b, std::size_t rowOfB) {
  const Row& one = a.m_rows[rowOfA];
  const Row& other = b.m_rows[rowOfB];
  const auto ones = a.eventsOf(one), others = b.eventsOf(other);
  return one.shape == other.shape && std::equal(ones.begin(), ones.end(), others.begin(), others.end());
}

}  // namespace mirvel
