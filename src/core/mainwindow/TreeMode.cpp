#include "core/mainwindow/TreeMode.h"

#include "core/catalogue/KindTexts.h"
#include "core/mainwindow/JobMenu.h"
#include "core/mainwindow/ModeRules.h"
#include "core/mainwindow/WindowContext.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "core/session/Shell.h"

namespace mirvel {

TreeMode::TreeMode(const WindowContext& context, TreeOutlineType& outline)
    : m_context(context),
      m_outline(outline),
      m_sections(context.catalogue, context.foundation.defaults),
      m_guard(context),
      m_expansion(context.foundation.defaults) {
  m_context.shell.modes.at(static_cast<std::size_t>(Mode::Tree)) = this;
}

TreeMode::~TreeMode() {
  m_context.shell.modes.at(static_cast<std::size_t>(Mode::Tree)) = nullptr;
}

void TreeMode::show(IndexPath path) {
  setExpanded(path.section, true);
  m_outline.mark(path);
  m_outline.scrollTo(path);
}

void TreeMode::select(const URL& url) {
  const auto path = m_sections.find(url);
  if (!path) return;
  show(*path);
  selectInCatalogue(m_context, url);
}

void TreeMode::select(const std::shared_ptr<Job>& job) {
  if (const auto path = m_sections.find(job.get())) show(*path);
}

void TreeMode::update(const Jobs& jobs) {
  if (m_sections.update(jobs)) m_outline.reload();
}

void TreeMode::deselect() {
  if (m_context.shell.detail) m_context.shell.detail->clearDetail();
  m_outline.mark(std::nullopt);
}

void TreeMode::contextMenu(JobMenu& menu, const std::shared_ptr<Job>& job) {
  jobContextMenu(m_context, menu, job);
}

void TreeMode::reloadJob(const std::shared_ptr<Job>& job) {
  if (const auto path = m_sections.find(job.get())) m_outline.reloadRow(*path);
}

void TreeMode::didAppear() {
  m_jobsUpdated = m_context.notifications.jobsUpdated.subscribe([this] { m_outline.redraw(); });
}

void TreeMode::didDisappear() {
  m_jobsUpdated = {};
}

TreeCell TreeMode::cell(IndexPath path) const {
  if (path.item == IndexPath::group && path.section < sections().size()) return groupCell(sections()[path.section]);
  const auto job = m_sections.job(path);
  if (!job) return {};
  TreeCell cell{.text = job->name,
                .toolTip = job->summary,
                .image = job->displayIcon(m_context.foundation.localize),
                .mark = failureMark(m_context, *job),
                .isSecondary = job->isDisabled()};
  if (cell.mark) cell.toolTip += "\n" + runsToolTip(m_context, *job);
  return cell;
}

TreeCell TreeMode::groupCell(const Kind::Section& section) const {
  return {.text = m_context.kinds.title(section.kind),
          .image = m_context.kinds.icon(section.kind),
          .count = m_context.foundation.localize.int_(static_cast<std::int64_t>(section.jobs.size()))};
}

bool TreeMode::isExpanded(std::size_t section) const {
  return section < sections().size() && m_expansion.isExpanded(sections()[section].kind);
}

void TreeMode::setExpanded(std::size_t section, bool isExpanded) {
  if (section >= sections().size() || isExpanded == this->isExpanded(section)) return;
  m_expansion.setExpanded(sections()[section].kind, isExpanded, sections());
  m_outline.setExpanded(section, isExpanded);
}

bool TreeMode::maySelect(IndexPath path) {
  return path.item != IndexPath::group && m_guard.mayChange();
}

void TreeMode::selectionDidChange(IndexPath path) {
  if (const auto job = m_sections.job(path)) selectInCatalogue(m_context, job->url);
}

bool TreeMode::accessibilityPress(IndexPath path) {
  const auto job = m_sections.job(path);
  if (!job || !selectInCatalogue(m_context, job->url)) return false;
  m_outline.mark(path);
  return true;
}

JobMenu TreeMode::menuForRow(IndexPath path) {
  return menuForJob(m_context, m_sections.job(path));
}

std::optional<URL> TreeMode::dragRows(const std::vector<IndexPath>& paths) const {
  const auto job = paths.empty() ? nullptr : m_sections.job(paths.front());
  return job ? draggedURL(*job) : std::nullopt;
}

const std::optional<TreeExpansion::Kinds>& TreeExpansion::saved() const {
  if (m_isRead) return m_saved;
  m_isRead = true;
  if (const auto numbers = m_defaults.expandedGroups()) m_saved.emplace(numbers->begin(), numbers->end());
  return m_saved;
}

bool TreeExpansion::isExpanded(Kind kind) const {
  return !saved() || saved()->contains(kind.rawValue());
}

void TreeExpansion::setExpanded(Kind kind, bool isExpanded, const Sections& present) {
  Kinds open;
  for (const Kind::Section& section : present) {
    const bool isOpen = section.kind == kind ? isExpanded : this->isExpanded(section.kind);
    if (isOpen) open.insert(section.kind.rawValue());
  }
  m_saved = open;
  // If the settings can't be written, the state is lost only when the program ends.
  (void)m_defaults.setExpandedGroups({open.begin(), open.end()});
}

}  // namespace mirvel
