#include "core/mainwindow/Timeline.h"

#include <algorithm>
#include <utility>

#include "core/jobfile/Plist.h"
#include "core/mainwindow/TimelineTexts.h"
#include "core/messages/JobReport.h"
#include "core/schedule/ZoneStretches.h"

namespace mirvel {

using namespace std::chrono;

namespace {

constexpr auto longestMonth = days(32);

double secondsOf(sys_seconds moment) {
  return static_cast<double>(moment.time_since_epoch().count());
}

local_days monthBefore(local_days day) {
  const year_month_day date = year_month_day(day) - months(1);
  return date.ok() ? local_days(date) : local_days(date.year() / date.month() / last);
}

/// What remains of a change when rows that are alike at both ends are left out.
template <typename AreAlike>
TimelineArray::Change differing(std::size_t top, std::size_t before, std::size_t after, AreAlike areAlike) {
  const std::size_t shorter = std::min(before, after);
  std::size_t same = 0, sameAtEnd = 0;
  while (same < shorter && areAlike(same, same)) ++same;
  while (sameAtEnd < shorter - same && areAlike(before - sameAtEnd - 1, after - sameAtEnd - 1)) ++sameAtEnd;
  return {top + same, before - same - sameAtEnd, after - same - sameAtEnd};
}

}  // namespace

sys_seconds oneMonthAfter(sys_seconds moment, const ZoneStretches& zone) {
  const local_seconds now = zone.local(moment);
  const local_days day = floor<days>(now);
  year_month_day date = year_month_day(day) + months(1);
  if (!date.ok()) date = date.year() / date.month() / last;
  return zone.moment(local_days(date) + (now - day));
}

TimelineArray::TimelineArray(const Jobs& jobs, const ReportOf& reportOf, sys_seconds now, const TimelineTexts& texts,
                             const IsOpen& isOpen)
    : m_nowHeader(texts.now()), m_intervalHeader(texts.intervals()), m_jobCount(jobs.size()) {
  const ZoneStretches zone(texts.zone(), now - longestMonth - days(2), now + longestMonth + days(2));
  addPastDays(now, zone, texts);
  std::vector<Report> reports;
  for (std::size_t owner = 0; reportOf && owner < jobs.size(); ++owner) {
    if (const JobReport* report = reportOf(*jobs[owner]))
      reports.push_back({static_cast<std::uint32_t>(owner), report});
  }
  fillPast(eventsOf(reports), isOpen);
  for (const Report& report : reports) addRunning(report, m_running);
  std::sort(m_running.begin(), m_running.end(), [](const auto& a, const auto& b) { return a.start < b.start; });
  addComing(jobs, now, zone, texts);
  m_showsNow = !m_running.empty() ||
               std::any_of(m_past.begin(), m_past.end(), [](const auto& past) { return !past.day.rows().empty(); });
  countRows();
}

/// The days after the same date a month ago, up to today.
void TimelineArray::addPastDays(sys_seconds now, const ZoneStretches& zone, const TimelineTexts& texts) {
  const local_days today = floor<days>(zone.local(now));
  for (local_days day = monthBefore(today) + days(1); day <= today; day += days(1)) {
    const sys_seconds begin = zone.moment(day);
    m_past.push_back({secondsOf(begin), texts.pastDay(begin, (today - day).count())});
  }
  m_endOfDay = zone.moment(today + days(1));
}

double TimelineArray::endOfPast() const {
  return secondsOf(m_endOfDay);
}

std::vector<PastEvent> TimelineArray::eventsOf(std::span<const Report> reports) const {
  std::vector<PastEvent> events;
  std::size_t most = 0;
  for (const Report& report : reports) {
    if (report.report) most += report.report->runs.size() + report.report->missed.size();
  }
  events.reserve(most);
  for (const auto& [owner, report] : reports) {
    if (report) addPastEvents(*report, owner, beginOfPast(), endOfPast(), events);
  }
  sortPastEvents(events, beginOfPast(), endOfPast());
  return events;
}

void TimelineArray::fillPast(std::vector<PastEvent> events, const IsOpen& isOpen) {
  auto first = events.begin();
  for (std::size_t day = 0; day < m_past.size(); ++day) {
    const double end = day + 1 < m_past.size() ? m_past[day + 1].begin : endOfPast();
    const auto last = std::partition_point(first, events.end(), [&](const auto& event) { return event.time < end; });
    m_past[day].day = TimelineDay::folded({first, last}, isOpen);
    first = last;
  }
}

void TimelineArray::addRunning(const Report& report, std::vector<Running>& running) const {
  if (!report.report || report.report->process <= 0 || report.report->isTest) return;
  const auto& runs = report.report->runs;
  const bool isKnown = !runs.empty() && !runs.back().end && runs.back().start > 0 && runs.back().start < endOfPast();
  running.push_back({isKnown ? runs.back().start : 0, report.owner});
}

void TimelineArray::addComing(const Jobs& jobs, sys_seconds now, const ZoneStretches& zone,
                              const TimelineTexts& texts) {
  std::vector<OwnedRule> rules;
  for (std::size_t job = 0; job < jobs.size(); ++job) {
    const jobfile::Plist* record = jobs[job]->kind.canBeLoaded() ? jobs[job]->record() : nullptr;
    const auto owner = static_cast<std::uint32_t>(job);
    if (record && record->startInterval) m_intervals.push_back(owner);
    if (!record || !record->startCalendarInterval) continue;
    for (const auto& interval : record->startCalendarInterval->intervals) {
      rules.push_back({CalendarRule::asShown(interval), owner});
    }
  }
  m_coming = mergedRuns(rules, zone, now, oneMonthAfter(now, zone));
  const local_days today = floor<days>(zone.local(now));
  for (auto first = m_coming.begin(); first != m_coming.end();) {
    const local_days day = floor<days>(zone.local(first->date));
    const sys_seconds end = zone.moment(day + days(1));
    std::string header = texts.day(first->date, (day - today).count());
    first = std::partition_point(first + 1, m_coming.end(), [&](const OwnedRun& run) { return run.date < end; });
    m_comingDays.push_back({static_cast<std::size_t>(first - m_coming.begin()), std::move(header)});
  }
}

std::size_t TimelineArray::comingBegin(std::size_t section) const {
  const std::size_t day = section - firstComingSection();
  return std::max(day == 0 ? 0 : m_comingDays[day - 1].end, m_firstComing);
}

std::size_t TimelineArray::rowsIn(std::size_t section) const {
  if (section == nowSection()) return m_showsNow ? 1 + m_running.size() : 0;
  std::size_t rows = 0;
  if (section < nowSection()) {
    rows = m_past[section].day.rows().size();
  } else if (section == intervalSection()) {
    rows = m_intervals.size();
  } else {
    const std::size_t end = m_comingDays[section - firstComingSection()].end;
    rows = end - std::min(end, comingBegin(section));
  }
  return rows == 0 ? 0 : 1 + rows;
}

void TimelineArray::countRows() {
  m_tops.assign(1, 0);
  for (std::size_t section = 0; section < firstComingSection() + m_comingDays.size(); ++section) {
    m_tops.push_back(m_tops.back() + rowsIn(section));
  }
}

bool TimelineArray::isToday(double time) const {
  return !m_past.empty() && time >= m_past.back().begin && time < endOfPast();
}

std::size_t TimelineArray::sectionOf(std::size_t row) const {
  return static_cast<std::size_t>(std::upper_bound(m_tops.begin(), m_tops.end(), row) - m_tops.begin()) - 1;
}

const std::string& TimelineArray::headerOf(std::size_t section) const {
  if (section < nowSection()) return m_past[section].header;
  if (section == nowSection()) return m_nowHeader;
  return section == intervalSection() ? m_intervalHeader : m_comingDays[section - firstComingSection()].header;
}

Timeline TimelineArray::contentOf(std::size_t section, std::size_t index) const {
  if (section >= firstComingSection()) {
    const OwnedRun& run = m_coming[comingBegin(section) + index];
    return {.kind = TimelineKind::Time, .time = secondsOf(run.date), .owner = run.owner};
  }
  if (section == intervalSection()) return {.kind = TimelineKind::Interval, .owner = m_intervals[index]};
  if (section == nowSection()) {
    return {.kind = TimelineKind::Running, .time = m_running[index].start, .owner = m_running[index].owner};
  }
  const TimelineDay& day = m_past[section].day;
  const TimelineDay::Row& row = day.rows()[index];
  const auto events = day.eventsOf(row);
  const bool isFold = row.shape == TimelineDay::Shape::Folded || row.shape == TimelineDay::Shape::Open;
  const auto kind = events.front().mark == RunMark::Missed ? TimelineKind::Missed : TimelineKind::Ended;
  return {.kind = isFold ? TimelineKind::Fold : kind,
          .time = events.back().time,
          .owner = events.front().owner,
          .events = events,
          .isOpen = row.shape == TimelineDay::Shape::Open,
          .isNested = row.shape == TimelineDay::Shape::Nested};
}

Timeline TimelineArray::row(std::size_t row) const {
  const std::size_t section = sectionOf(row);
  const std::size_t index = row - m_tops[section];
  if (index > 0) return contentOf(section, index - 1);
  return {.kind = section == nowSection() ? TimelineKind::Now : TimelineKind::Group, .header = headerOf(section)};
}

std::vector<std::size_t> TimelineArray::groups() const {
  std::vector<std::size_t> rows;
  for (std::size_t section = 0; section + 1 < m_tops.size(); ++section) {
    if (m_tops[section] < m_tops[section + 1]) rows.push_back(m_tops[section]);
  }
  return rows;
}

std::optional<std::size_t> TimelineArray::now() const {
  return m_showsNow ? std::optional(m_tops[nowSection()]) : std::nullopt;
}

std::size_t TimelineArray::rowOfComing(std::size_t index) const {
  const auto day = std::upper_bound(m_comingDays.begin(), m_comingDays.end(), index,
                                    [](std::size_t at, const ComingDay& coming) { return at < coming.end; });
  const std::size_t section = firstComingSection() + static_cast<std::size_t>(day - m_comingDays.begin());
  return m_tops[section] + 1 + index - comingBegin(section);
}

std::optional<std::size_t> TimelineArray::lastPastOf(std::uint32_t owner) const {
  for (std::size_t section = m_past.size(); section-- > 0;) {
    const TimelineDay& day = m_past[section].day;
    for (std::size_t row = day.rows().size(); row-- > 0;) {
      if (day.events()[day.rows()[row].first].owner == owner) return m_tops[section] + 1 + row;
    }
  }
  return std::nullopt;
}

std::optional<std::size_t> TimelineArray::rowOf(std::uint32_t owner) const {
  const auto running =
      std::find_if(m_running.begin(), m_running.end(), [&](const auto& row) { return row.owner == owner; });
  if (running != m_running.end()) {
    return m_tops[nowSection()] + 1 + static_cast<std::size_t>(running - m_running.begin());
  }
  const auto interval = std::find(m_intervals.begin(), m_intervals.end(), owner);
  if (interval != m_intervals.end()) {
    return m_tops[intervalSection()] + 1 + static_cast<std::size_t>(interval - m_intervals.begin());
  }
  const auto coming = std::find_if(m_coming.begin() + static_cast<std::ptrdiff_t>(m_firstComing), m_coming.end(),
                                   [&](const OwnedRun& run) { return run.owner == owner; });
  return coming == m_coming.end() ? lastPastOf(owner)
                                  : rowOfComing(static_cast<std::size_t>(coming - m_coming.begin()));
}

std::optional<std::size_t> TimelineArray::sectionOfDay(double time) const {
  const auto day = std::upper_bound(m_past.begin(), m_past.end(), time,
                                    [](double at, const PastDay& past) { return at < past.begin; });
  if (day == m_past.begin()) return std::nullopt;
  return static_cast<std::size_t>(day - m_past.begin()) - 1;
}

std::optional<std::size_t> TimelineArray::findPast(const Timeline& row) const {
  const auto section = sectionOfDay(row.time);
  if (!section) return std::nullopt;
  using Want = TimelineDay::Want;
  const TimelineDay& day = m_past[*section].day;
  const auto found = day.find(row.time, row.owner, row.kind == TimelineKind::Fold ? Want::Stretch : Want::Event);
  return found ? std::optional(m_tops[*section] + 1 + *found) : std::nullopt;
}

std::optional<std::size_t> TimelineArray::findRunning(const Timeline& row) const {
  const auto found = std::find(m_running.begin(), m_running.end(), Running{row.time, row.owner});
  if (found == m_running.end()) return findPast(row);
  return m_tops[nowSection()] + 1 + static_cast<std::size_t>(found - m_running.begin());
}

std::size_t TimelineArray::firstComingFrom(double time) const {
  const auto from = m_coming.begin() + static_cast<std::ptrdiff_t>(m_firstComing);
  const auto found =
      std::partition_point(from, m_coming.end(), [&](const auto& run) { return secondsOf(run.date) < time; });
  return static_cast<std::size_t>(found - m_coming.begin());
}

std::optional<std::size_t> TimelineArray::findComing(const Timeline& row) const {
  for (std::size_t at = firstComingFrom(row.time); at < m_coming.size() && secondsOf(m_coming[at].date) == row.time;
       ++at) {
    if (m_coming[at].owner == row.owner) return rowOfComing(at);
  }
  return std::nullopt;
}

std::optional<std::size_t> TimelineArray::find(const Timeline& row) const {
  switch (row.kind) {
    case TimelineKind::Now:
      return now();
    case TimelineKind::Ended:
    case TimelineKind::Missed:
    case TimelineKind::Fold:
      return findPast(row);
    case TimelineKind::Running:
      return findRunning(row);
    case TimelineKind::Time:
      return findComing(row);
    case TimelineKind::Interval: {
      const auto found = std::lower_bound(m_intervals.begin(), m_intervals.end(), row.owner);
      if (found == m_intervals.end() || *found != row.owner) return std::nullopt;
      return m_tops[intervalSection()] + 1 + static_cast<std::size_t>(found - m_intervals.begin());
    }
    case TimelineKind::Group:
      break;
  }
  return std::nullopt;
}

std::size_t TimelineArray::nearest(const Timeline& row) const {
  std::size_t found = m_tops[nowSection()];
  if (row.kind == TimelineKind::Ended || row.kind == TimelineKind::Missed || row.kind == TimelineKind::Fold) {
    const auto section = sectionOfDay(row.time);
    const std::size_t rows = section ? m_past[*section].day.rowsBefore(row.time) : 0;
    found = section ? m_tops[*section] + (rows > 0 ? 1 + rows : 0) : 0;
  } else if (row.kind == TimelineKind::Time) {
    const std::size_t coming = firstComingFrom(row.time);
    found = coming < m_coming.size() ? rowOfComing(coming) : count();
  }
  return std::min(found, count() - 1);
}

std::optional<std::size_t> TimelineArray::firstOf(const std::vector<bool>& owners, std::size_t start) const {
  const std::size_t rows = count();
  std::size_t section = rows == 0 ? 0 : sectionOf(start);
  std::size_t at = start;
  for (std::size_t step = 0; step < rows; ++step, ++at) {
    if (at == rows) at = section = 0;
    while (at >= m_tops[section + 1]) ++section;
    if (at > m_tops[section] && owners[contentOf(section, at - m_tops[section] - 1).owner]) return at;
  }
  return std::nullopt;
}

sys_seconds TimelineArray::nextChange() const {
  return m_firstComing < m_coming.size() ? std::min(m_coming[m_firstComing].date, m_endOfDay) : m_endOfDay;
}

void TimelineArray::advance(sys_seconds now, const DidChange& didChange) {
  const std::size_t due = firstComingFrom(secondsOf(now) + 1);
  for (std::size_t day = 0; day < m_comingDays.size() && m_firstComing < due; ++day) {
    if (m_comingDays[day].end <= m_firstComing) continue;
    const std::size_t section = firstComingSection() + day, top = m_tops[section], before = rowsIn(section);
    m_firstComing = std::min(due, m_comingDays[day].end);
    const std::size_t after = rowsIn(section);
    countRows();
    didChange({after == 0 ? top : top + 1, before - after, 0});
  }
}

void TimelineArray::setReports(std::span<const Report> reports, const IsOpen& isOpen, const DidChange& didChange) {
  std::vector<bool> isNew(m_jobCount);
  for (const Report& report : reports) isNew[report.owner] = true;
  const auto events = eventsOf(reports);
  auto first = events.begin();
  for (std::size_t day = 0; day < m_past.size(); ++day) {
    const double end = day + 1 < m_past.size() ? m_past[day + 1].begin : endOfPast();
    const auto last = std::partition_point(first, events.end(), [&](const auto& event) { return event.time < end; });
    auto merged = m_past[day].day.merged(isNew, {first, last});
    if (merged) replaceDay(day, TimelineDay::folded(*std::move(merged), isOpen), didChange);
    first = last;
  }
  auto running = m_running;
  std::erase_if(running, [&](const Running& row) { return isNew[row.owner]; });
  for (const Report& report : reports) addRunning(report, running);
  replaceRunning(std::move(running), didChange);
}

void TimelineArray::replaceDay(std::size_t section, TimelineDay day, const DidChange& didChange) {
  const TimelineDay old = std::exchange(m_past[section].day, std::move(day));
  const TimelineDay& current = m_past[section].day;
  const std::size_t top = m_tops[section], before = m_tops[section + 1] - top;
  countRows();
  const std::size_t after = rowsIn(section);
  const Change change = differing(top, before, after, [&](std::size_t a, std::size_t b) {
    return a == 0 || b == 0 ? a == b : TimelineDay::areAlike(old, a - 1, current, b - 1);
  });
  if (change.removed + change.inserted > 0) didChange(change);
}

void TimelineArray::replaceRunning(std::vector<Running> running, const DidChange& didChange) {
  std::stable_sort(running.begin(), running.end(), [](const auto& a, const auto& b) { return a.start < b.start; });
  const auto old = std::exchange(m_running, std::move(running));
  const std::size_t top = m_tops[nowSection()], before = m_tops[nowSection() + 1] - top;
  m_showsNow = !m_running.empty() || m_tops[nowSection()] > 0;
  countRows();
  const Change change = differing(top, before, rowsIn(nowSection()), [&](std::size_t a, std::size_t b) {
    return a == 0 || b == 0 ? a == b : old[a - 1] == m_running[b - 1];
  });
  if (change.removed + change.inserted > 0) didChange(change);
}

void TimelineArray::refold(std::size_t row, const IsOpen& isOpen, const DidChange& didChange) {
  const std::size_t section = sectionOf(row);
  if (section >= nowSection()) return;
  replaceDay(section, TimelineDay::folded(m_past[section].day.events(), isOpen), didChange);
}

}  // namespace mirvel
