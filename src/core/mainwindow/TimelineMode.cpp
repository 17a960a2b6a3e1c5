#include "core/mainwindow/TimelineMode.h"

#include <algorithm>
#include <chrono>

#include "core/mainwindow/JobMenu.h"
#include "core/mainwindow/ModeRules.h"
#include "core/mainwindow/WindowContext.h"
#include "core/session/Catalogue.h"
#include "core/session/Foundation.h"
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
      m_texts(std::make_unique<TimelineTexts>(context.foundation.localize, m_zone())) {
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
  const bool keepsRows = !m_timelineArray.rows().empty() && areEqual(jobs, content());
  m_content = jobs;
  if (keepsRows) return;
  buildTimeline();
  m_table.reload();
}

void TimelineMode::buildTimeline() {
  const auto now = m_context.platform.clock.currentSecond();
  std::string zone = m_zone();
  if (zone != m_texts->zone()) {
    m_texts = std::make_unique<TimelineTexts>(m_context.foundation.localize, std::move(zone));
  }
  m_timelineArray = mirvel::buildTimeline(content(), now, *m_texts);
}

std::optional<std::size_t> TimelineMode::firstRow(const URL& url) const {
  std::vector<const TimelineSource*> sources;
  for (const TimelineSource& source : m_timelineArray.sources()) {
    if (source.url && source.url->equalTo(url)) sources.push_back(&source);
  }
  const auto& rows = m_timelineArray.rows();
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const Timeline& row) {
    return std::find(sources.begin(), sources.end(), &row.source()) != sources.end();
  });
  if (found == rows.end()) return std::nullopt;
  return static_cast<std::size_t>(found - rows.begin());
}

void TimelineMode::select(const URL& url) {
  const auto row = firstRow(url);
  if (!row) return;
  m_table.mark(*row);
  m_table.scrollTo(*row);
  selectInCatalogue(m_context, url);
}

void TimelineMode::deselect() {
  if (m_context.shell.detail) m_context.shell.detail->clearDetail();
  m_table.mark(std::nullopt);
}

void TimelineMode::contextMenu(JobMenu& menu, const std::shared_ptr<Job>& job) {
  jobContextMenuWithoutDelete(m_context, menu, job);
}

TimelineCell TimelineMode::cell(std::size_t row) const {
  if (row >= m_timelineArray.rows().size()) return {};
  const Timeline& timeline = m_timelineArray.rows()[row];
  return {.kind = timeline.kind(),
          .time = timeline.kind() == TimelineKind::Time ? m_texts->time(timeline.date()) : "",
          .name = timeline.name(),
          .isSecondary = !timeline.isEnabled()};
}

std::vector<std::string> TimelineMode::sampleTimes() const {
  constexpr int hoursOfADay = 24;
  std::vector<std::string> times;
  times.reserve(hoursOfADay);
  for (int hour = 0; hour < hoursOfADay; ++hour) times.push_back(m_texts->time(sys_seconds(hours(hour))));
  return times;
}

std::shared_ptr<Job> TimelineMode::jobAt(std::size_t row) const {
  if (row >= m_timelineArray.rows().size()) return nullptr;
  const auto& url = m_timelineArray.rows()[row].url();
  return url ? m_context.catalogue.jobAt(*url) : nullptr;
}

void TimelineMode::selectionDidChange(std::size_t row) {
  const auto job = jobAt(row);
  const auto selected = m_context.selection.job();
  if (!job || (selected && selected->url.equalTo(job->url))) return;
  m_context.selection.select(job);
}

JobMenu TimelineMode::menuForRow(std::size_t row) {
  return menuForJob(m_context, jobAt(row));
}

std::optional<URL> TimelineMode::dragRows(const std::vector<std::size_t>& rows) const {
  const auto job = rows.empty() ? nullptr : jobAt(rows.front());
  return job ? draggedURL(*job) : std::nullopt;
}

}  // namespace mirvel
