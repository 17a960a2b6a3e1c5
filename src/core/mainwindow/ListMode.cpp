#include "core/mainwindow/ListMode.h"

#include <algorithm>

#include "core/actions/HostStart.h"
#include "core/catalogue/KindTexts.h"
#include "core/jobfile/Plist.h"
#include "core/mainwindow/JobMenu.h"
#include "core/mainwindow/ModeRules.h"
#include "core/mainwindow/WindowContext.h"
#include "core/runs/JobRuns.h"
#include "core/runs/RunDetails.h"
#include "core/runs/RunMoments.h"
#include "core/runs/RunStateTexts.h"
#include "core/session/Catalogue.h"
#include "core/session/CurrentMode.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace {

ListCell textCell(const Job& job, const std::string& text) {
  return {.text = text, .toolTip = text, .isSecondary = job.isDisabled()};
}

ListCell kindCell(const WindowContext& context, const Job& job) {
  Image icon = context.kinds.icon(job.kind);
  const std::string title = context.kinds.title(job.kind);
  icon.accessibilityDescription = title;
  ListCell cell{.toolTip = title, .image = std::move(icon), .mark = failureMark(context, job)};
  if (cell.mark) cell.toolTip += "\n" + runsToolTip(context, job);
  return cell;
}

ListCell stateCell(const WindowContext& context, const Job& job) {
  const JobState state = context.runs.state(job);
  return {.text = RunStateTexts(context.foundation.localize).state(state),
          .toolTip = state == JobState::Unknown ? std::string() : runsToolTip(context, job),
          .image = stateImage(state, context.foundation.localize),
          .isSecondary = job.isDisabled()};
}

ListCell lastRunCell(const WindowContext& context, const Job& job) {
  const RunReport* const run = context.runs.lastRun(job);
  if (!run || run->start <= 0) return {};
  return {.text = String::firstUppercased(context.moments.text(run->start, context.platform.clock.secondsSince1970())),
          .toolTip = runsToolTip(context, job),
          .isSecondary = job.isDisabled()};
}

ListCell statusCell(const WindowContext& context, const Job& job) {
  const Localize& localize = context.foundation.localize;
  if (job.kind == Kind::extraFolder) return {};  // enabled or not, nothing loads it
  if (!context.hostStart.keepsFromRunning(job)) return {.image = statusImage(!job.isDisabled(), localize)};
  return {.toolTip = localize.enabledButCantRun(), .image = notRunImage(localize)};
}

}  // namespace

ListCell listCell(const WindowContext& context, const Job& job, ListColumn column) {
  const jobfile::Plist* record = job.record();
  switch (column) {
    case ListColumn::Name:
      return textCell(job, job.name);
    case ListColumn::Summary:
      return textCell(job, job.summary);
    case ListColumn::Kind:
      return kindCell(context, job);
    case ListColumn::Enabled:
      return statusCell(context, job);
    case ListColumn::KeepAlive:
      return {.isChecked = record && record->keepAlive};
    case ListColumn::Scheduled:
      return {.isChecked = record && record->isScheduled()};
    case ListColumn::Run:
      return textCell(job, job.run());
    case ListColumn::LastRun:
      return lastRunCell(context, job);
    case ListColumn::State:
      return stateCell(context, job);
  }
  return {};
}

ListMode::ListMode(const WindowContext& context, ListTableType& table)
    : m_context(context),
      m_table(table),
      m_guard(context),
      m_delay(context.platform.mainQueue),
      m_limit(context.platform.mainQueue),
      m_runsChanged(context.runs.changed().subscribe([this](const Jobs&) { runsChanged(); })),
      m_visibilityChanged(context.runs.visibilityChanged().subscribe([this] { runsChanged(); })) {
  m_context.shell.modes.at(static_cast<std::size_t>(Mode::List)) = this;
}

ListMode::~ListMode() {
  m_context.shell.modes.at(static_cast<std::size_t>(Mode::List)) = nullptr;
}

const Jobs& ListMode::content() const {
  if (!m_content) m_content = m_context.catalogue.jobs();
  return *m_content;
}

std::optional<std::size_t> ListMode::rowAt(const URL& url) const {
  const Jobs& rows = content();
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const auto& job) { return job->url.equalTo(url); });
  if (found == rows.end()) return std::nullopt;
  return static_cast<std::size_t>(found - rows.begin());
}

void ListMode::show(std::size_t row) {
  m_table.mark(row);
  m_table.scrollTo(row);
}

void ListMode::select(const URL& url) {
  const auto row = rowAt(url);
  if (!row) return;
  show(*row);
  selectInCatalogue(m_context, url);
}

void ListMode::select(const std::shared_ptr<Job>& job) {
  const Jobs& rows = content();
  const auto found = std::find(rows.begin(), rows.end(), job);
  if (found != rows.end()) show(static_cast<std::size_t>(found - rows.begin()));
}

void ListMode::update(const Jobs& jobs) {
  // Equal jobs keep their rows, but the rows must refer to the jobs that are now in the catalogue.
  const bool keepsRows = areEqual(jobs, content());
  m_content = jobs;
  if (!keepsRows || isSortedByRuns()) sort();  // states aren't followed while another mode is chosen
  m_table.reload();
}

void ListMode::deselect() {
  if (m_context.shell.detail) m_context.shell.detail->clearDetail();
  m_table.mark(std::nullopt);
}

void ListMode::contextMenu(JobMenu& menu, const std::shared_ptr<Job>& job) {
  jobContextMenu(m_context, menu, job);
}

void ListMode::reloadJob(const std::shared_ptr<Job>& job) {
  const Jobs& rows = content();
  const auto found = std::find(rows.begin(), rows.end(), job);
  if (found != rows.end()) m_table.reloadRow(static_cast<std::size_t>(found - rows.begin()));
}

bool ListMode::isSortedByRuns() const {
  const auto column = m_sortDescriptor ? listColumn(m_sortDescriptor->key) : std::nullopt;
  return column && dependsOnRuns(*column);
}

/// Rows that are sorted by states or last runs would otherwise stay where they were until the next scan.
void ListMode::runsChanged() {
  constexpr double pause = 1;  // in seconds, so that rows don't jump all the time
  if (!m_content || !isSortedByRuns() || m_context.currentMode.view() != this) return;
  if (!m_context.runs.isWindowVisible()) return;
  m_limit.interval("sort", pause, [this] { sortAgain(); });
}

void ListMode::sortAgain() {
  const Jobs before = content();
  sort();
  if (before == content()) return;
  m_table.reload();
  const auto job = shownJob(m_context.selection, m_context.shell);
  const auto row = job ? rowAt(job->url) : std::nullopt;
  if (row) m_table.mark(*row);
}

ListCell ListMode::cell(ListColumn column, std::size_t row) const {
  if (row >= content().size()) return {};
  return listCell(m_context, *content()[row], column);
}

void ListMode::setSortDescriptor(SortDescriptor descriptor) {
  m_sortDescriptor = std::move(descriptor);
  (void)content();
  sort();
  m_table.reload();
  if (const auto job = m_context.selection.job()) select(job->url);
}

void ListMode::sort() {
  const auto column = m_sortDescriptor ? listColumn(m_sortDescriptor->key) : std::nullopt;
  if (!column) return;
  sortJobs(*m_content, *column, m_sortDescriptor->isAscending, m_context.foundation.collator, m_context.runs);
  m_delay(0.01, [this] { m_table.prepareHeaders(); });
}

void ListMode::selectionDidChange(std::size_t row) {
  if (row < content().size()) selectInCatalogue(m_context, content()[row]->url);
}

JobMenu ListMode::menuForRow(std::size_t row) {
  return menuForJob(m_context, row < content().size() ? content()[row] : nullptr);
}

std::optional<URL> ListMode::dragRows(const std::vector<std::size_t>& rows) const {
  if (rows.empty() || rows.front() >= content().size()) return std::nullopt;
  return draggedURL(*content()[rows.front()]);
}

}  // namespace mirvel
