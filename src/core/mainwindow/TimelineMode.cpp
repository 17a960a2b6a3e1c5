#include "core/mainwindow/TimelineMode.h"

#include <algorithm>
#include <chrono>

#include "core/mainwindow/JobMenu.h"
#include "core/mainwindow/ModeRules.h"
#include "core/mainwindow/WindowContext.h"
#include "core/runs/JobRuns.h"
#include "core/session/Catalogue.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

using namespace std::chrono;

TimelineMode::TimelineMode(const WindowContext& context, TimelineTableType& table, Zone zone)
    : m_context(context),
      m_table(table),
      m_guard(context),
      m_zone(std::move(zone)),
      m_delay(context.platform.mainQueue),
      m_texts(std::make_unique<TimelineTexts>(context.foundation.localize, m_zone())),
      m_runsChanged(context.runs.changed().subscribe([this](const Jobs& jobs) { runsChanged(jobs); })),
      // While the machine sleeps, timers stop; the user then returns to the window.
      m_appStatusChanged(context.notifications.appStatusChanged.subscribe([this] { catchUp(); })) {
  m_context.shell.modes.at(static_cast<std::size_t>(Mode::Timeline)) = this;
}

TimelineMode::~TimelineMode() {
  m_context.shell.modes.at(static_cast<std::size_t>(Mode::Timeline)) = nullptr;
}

const Jobs& TimelineMode::content() const {
  if (!m_content) m_content = m_context.catalogue.jobs();
  return *m_content;
}

void TimelineMode::update(const Jobs& jobs) {
  // Equal jobs keep their rows, but the objects of the previous scan must not be kept alive.
  const bool keepsRows = m_timelineArray.count() > 0 && areEqual(jobs, content());
  if (!keepsRows) return rebuild(jobs);
  m_owners.clear();
  m_content = jobs;
  if (isOutdated()) rebuild(jobs);
}

void TimelineMode::rebuild(const Jobs& jobs) {
  const auto anchor = m_table.anchor();
  const auto before = anchor ? markedAt(*anchor) : std::nullopt;
  m_owners.clear();
  m_content = Jobs(jobs);  // a copy, since `jobs` may be the content itself
  buildTimeline();
  m_table.reload(anchor ? anchorAfter(before, *anchor) : std::nullopt);
  restoreMark();
  arm();
}

void TimelineMode::buildTimeline() {
  m_shownMoment = m_context.platform.clock.currentSecond();
  std::string zone = m_zone();
  if (zone != m_texts->zone()) {
    m_texts = std::make_unique<TimelineTexts>(m_context.foundation.localize, std::move(zone));
  }
  const auto reportOf = [this](const Job& job) { return m_context.runs.report(job); };
  m_timelineArray = TimelineArray(content(), reportOf, m_shownMoment, *m_texts, openTest());
  m_isStale = false;
  noteNextRuns();
}

/// Finds out when the next row of an interval shows a coming run that has passed.
void TimelineMode::noteNextRuns() {
  m_nextIntervalRun.reset();
  for (const std::uint32_t owner : m_timelineArray.intervals()) noteNextRun(m_context.runs.report(*content()[owner]));
}

void TimelineMode::noteNextRun(const JobReport* report) {
  if (!report || !report->nextRun || *report->nextRun <= m_context.platform.clock.secondsSince1970()) return;
  m_nextIntervalRun = std::min(*report->nextRun, m_nextIntervalRun.value_or(*report->nextRun));
}

/// When the rows change by the clock alone.
double TimelineMode::nextChange() const {
  // A host that lives reports the run and the one after it, so that the row needn't change twice.
  constexpr double timeToReport = 1;
  const auto next = static_cast<double>(m_timelineArray.nextChange().time_since_epoch().count());
  return m_nextIntervalRun ? std::min(next, *m_nextIntervalRun + timeToReport) : next;
}

/// Whether the rows have to be built again to be those of this moment.
bool TimelineMode::isOutdated() {
  const auto now = m_context.platform.clock.currentSecond();
  return m_isStale || now >= m_timelineArray.endOfDay() || now < m_shownMoment || m_zone() != m_texts->zone();
}

void TimelineMode::setVisible(bool isVisible) {
  m_isVisible = isVisible;
  // Later, because the jobs that will be shown are about to be set if the user has switched to this mode.
  if (isVisible) m_delay(0, [this] { catchUp(); });
}

void TimelineMode::catchUp() {
  if (!m_isVisible || !m_content) return;
  if (isOutdated()) return rebuild(content());
  m_shownMoment = m_context.platform.clock.currentSecond();
  const std::size_t before = m_timelineArray.count();
  m_timelineArray.advance(m_shownMoment, didChange());
  if (m_timelineArray.count() != before) restoreMark();
  if (m_nextIntervalRun && *m_nextIntervalRun <= m_context.platform.clock.secondsSince1970()) {
    noteNextRuns();
    m_table.redraw();
  }
  arm();
}

TimelineArray::DidChange TimelineMode::didChange(std::optional<std::size_t> kept) {
  return [this, kept](const TimelineArray::Change& change) { m_table.rowsDidChange(change, kept); };
}

/// Arranges for `catchUp` at the next change by the clock.
void TimelineMode::arm() {
  if (!m_isVisible) return;
  constexpr double longestWait = 900;  // in case that the clock is set, or the machine sleeps
  const double now = m_context.platform.clock.secondsSince1970();
  const double wait = std::clamp(nextChange() - now, 0.0, longestWait);
  if (m_armedFor && *m_armedFor >= now && *m_armedFor <= now + wait) return;
  m_armedFor = now + wait;
  m_delay(wait, [this, timer = ++m_timer] {
    if (timer != m_timer) return;
    m_armedFor.reset();
    catchUp();
  });
}

void TimelineMode::runsChanged(const Jobs& jobs) {
  if (!m_isVisible || m_isStale) {
    m_isStale = true;
    return;
  }
  const auto reports = reportsOf(jobs);
  if (reports.empty()) return;
  constexpr std::size_t few = 16;
  if (reports.size() > few && reports.size() > content().size() / 8) return rebuild(content());
  m_timelineArray.setReports(reports, openTest(), didChange());
  restoreMark();
  const auto& intervals = m_timelineArray.intervals();
  for (const TimelineArray::Report& report : reports) {
    if (std::binary_search(intervals.begin(), intervals.end(), report.owner)) noteNextRun(report.report);
  }
  arm();
  m_table.redraw();
}

std::vector<TimelineArray::Report> TimelineMode::reportsOf(const Jobs& jobs) {
  if (m_owners.empty()) {
    for (std::size_t owner = 0; owner < content().size(); ++owner) {
      m_owners.emplace(content()[owner].get(), static_cast<std::uint32_t>(owner));
    }
  }
  std::vector<TimelineArray::Report> reports;
  for (const auto& job : jobs) {
    const auto owner = m_owners.find(job.get());
    if (owner != m_owners.end()) reports.push_back({owner->second, m_context.runs.report(*job)});
  }
  return reports;
}

TimelineArray::IsOpen TimelineMode::openTest() const {
  if (m_openFolds.isEmpty()) return {};
  return [this](const PastEvent& first, const PastEvent& last) {
    return m_openFolds.contains(content()[first.owner]->url.text(), first.time, last.time);
  };
}

/// The row and its job, for use after rows have changed; none for a header of a day and a row out of range.
std::optional<TimelineMode::Marked> TimelineMode::markedAt(std::size_t row) const {
  if (row >= m_timelineArray.count()) return std::nullopt;
  Timeline found = m_timelineArray.row(row);
  if (found.kind == TimelineKind::Group) return std::nullopt;
  const Job* const job = shownJobAt(row);
  found.header = {};
  found.events = {};
  return Marked{found, job ? job->url : URL::address("now")};
}

std::optional<TimelineTableType::Anchor> TimelineMode::anchorAfter(const std::optional<Marked>& before,
                                                                   std::size_t row) const {
  if (!before || m_timelineArray.count() == 0) return std::nullopt;
  Timeline wanted = before->row;
  wanted.owner = ownerOf(before->url).value_or(Timeline::nobody);
  const auto found = m_timelineArray.find(wanted);
  return TimelineTableType::Anchor{row, found ? *found : m_timelineArray.nearest(wanted)};
}

/// Marks the same row as before, else another one of its job.
void TimelineMode::restoreMark() {
  if (!m_marked) return;
  const auto owner = ownerOf(m_marked->url);
  std::optional<std::size_t> row;
  if (owner) {
    m_marked->row.owner = *owner;
    row = m_timelineArray.find(m_marked->row);
    if (!row) row = m_timelineArray.rowOf(*owner);
  }
  m_marked = row ? markedAt(*row) : std::nullopt;
  m_table.mark(row);
}

std::optional<std::uint32_t> TimelineMode::ownerOf(const URL& url) const {
  const Jobs& jobs = content();
  const auto found = std::find_if(jobs.begin(), jobs.end(), [&](const auto& job) { return job->url.equalTo(url); });
  if (found == jobs.end()) return std::nullopt;
  return static_cast<std::uint32_t>(found - jobs.begin());
}

std::optional<std::size_t> TimelineMode::rowOf(const URL& url) const {
  const auto owner = ownerOf(url);
  if (!owner) return std::nullopt;
  for (const auto& preferred : {m_marked, m_menuRow}) {
    if (!preferred || !preferred->url.equalTo(url)) continue;
    Timeline wanted = preferred->row;
    wanted.owner = *owner;
    if (const auto found = m_timelineArray.find(wanted)) return found;
  }
  return m_timelineArray.rowOf(*owner);
}

void TimelineMode::select(const URL& url) {
  const auto row = rowOf(url);
  m_menuRow.reset();
  if (!row) return;
  m_marked = markedAt(*row);
  m_table.mark(*row);
  m_table.scrollTo(*row);
  selectInCatalogue(m_context, url);
}

void TimelineMode::deselect() {
  if (m_context.shell.detail) m_context.shell.detail->clearDetail();
  m_marked.reset();
  m_table.mark(std::nullopt);
}

void TimelineMode::contextMenu(JobMenu& menu, const std::shared_ptr<Job>& job) {
  jobContextMenuWithoutDelete(m_context, menu, job);
}

TimelineCell TimelineMode::cell(std::size_t row) const {
  if (row >= m_timelineArray.count()) return {};
  const Job* const job = shownJobAt(row);
  return timelineCell(m_timelineArray, row, job, job ? m_context.runs.report(*job) : nullptr,
                      m_context.platform.clock.secondsSince1970(), *m_texts);
}

std::vector<std::string> TimelineMode::sampleTimes() const {
  constexpr int hoursOfADay = 24;
  std::vector<std::string> times;
  times.reserve(hoursOfADay);
  for (int hour = 0; hour < hoursOfADay; ++hour) times.push_back(m_texts->time(sys_seconds(hours(hour))));
  return times;
}

std::optional<std::size_t> TimelineMode::firstNamed(const std::function<bool(const std::string& name)>& test,
                                                    std::size_t start) const {
  std::vector<bool> owners;
  for (const auto& job : content()) owners.push_back(test(job->name));
  return m_timelineArray.firstOf(owners, start);
}

const Job* TimelineMode::shownJobAt(std::size_t row) const {
  if (row >= m_timelineArray.count()) return nullptr;
  const std::uint32_t owner = m_timelineArray.row(row).owner;
  return owner < content().size() ? content()[owner].get() : nullptr;
}

std::shared_ptr<Job> TimelineMode::jobAt(std::size_t row) const {
  const Job* const job = shownJobAt(row);
  return job ? m_context.catalogue.jobAt(job->url) : nullptr;
}

void TimelineMode::selectionDidChange(std::size_t row) {
  const auto job = jobAt(row);
  if (!job) return;
  m_marked = markedAt(row);
  m_menuRow.reset();
  const auto selected = m_context.selection.job();
  if (selected && selected->url.equalTo(job->url)) return;
  m_context.selection.select(job);
}

/// The row of the stretch to which a nested row belongs; others are returned as they are.
std::size_t TimelineMode::stretchOf(std::size_t row) const {
  while (row > 0 && m_timelineArray.row(row).isNested) --row;
  return row;
}

bool TimelineMode::setOpen(std::size_t from, bool isOpen) {
  if (from >= m_timelineArray.count()) return false;
  const std::size_t row = isOpen ? from : stretchOf(from);
  const Timeline stretch = m_timelineArray.row(row);
  const Job* const job = shownJobAt(row);
  if (stretch.kind != TimelineKind::Fold || stretch.isOpen == isOpen || !job) return false;
  const double first = stretch.events.front().time, last = stretch.events.back().time;
  if (isOpen) {
    m_openFolds.open(job->url.text(), last);
  } else {
    m_openFolds.close(job->url.text(), first, last);
  }
  m_timelineArray.refold(row, openTest(), didChange(row));
  restoreMark();
  m_table.scrollTo(row);
  return true;
}

JobMenu TimelineMode::menuForRow(std::size_t row) {
  m_menuRow = markedAt(row);
  JobMenu menu = menuForJob(m_context, jobAt(row));
  if (menu.items().empty()) return menu;
  const Timeline shown = m_timelineArray.row(row);
  const bool isOpen = shown.isOpen || shown.isNested;
  if (shown.kind == TimelineKind::Fold || isOpen) {
    menu.addSeparator();
    menu.add(isOpen ? m_texts->foldRuns() : m_texts->showEachRun(), [this, row, isOpen] { setOpen(row, !isOpen); });
  }
  return menu;
}

std::optional<URL> TimelineMode::dragRows(const std::vector<std::size_t>& rows) const {
  const auto job = rows.empty() ? nullptr : jobAt(rows.front());
  return job ? draggedURL(*job) : std::nullopt;
}

}  // namespace mirvel
