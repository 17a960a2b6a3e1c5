#include "core/mainwindow/GridMode.h"

#include "core/catalogue/KindTexts.h"
#include "core/mainwindow/JobMenu.h"
#include "core/mainwindow/MainWindowController.h"
#include "core/mainwindow/ModeRules.h"
#include "core/mainwindow/WindowContext.h"
#include "core/mainwindow/WindowTexts.h"
#include "core/session/Busy.h"
#include "core/session/Editing.h"
#include "core/session/Foundation.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

namespace {

Image noWriteImage(const Localize& localize) {
  Image image = Image::named("emblem-readonly");
  image.accessibilityDescription = WindowTexts(localize).notEditable();
  return image;
}

}  // namespace

GridMode::GridMode(const WindowContext& context, GridCollectionType& collection)
    : m_context(context), m_collection(collection), m_sections(context.catalogue, context.foundation.defaults) {
  m_context.shell.modes.at(static_cast<std::size_t>(Mode::Grid)) = this;
}

GridMode::~GridMode() {
  m_context.shell.modes.at(static_cast<std::size_t>(Mode::Grid)) = nullptr;
}

void GridMode::show(IndexPath path) {
  m_collection.mark(path);
  m_collection.scrollTo(path);
}

void GridMode::select(const URL& url) {
  const auto path = m_sections.find(url);
  if (!path) return;
  show(*path);
  selectInCatalogue(m_context, url);
}

void GridMode::select(const std::shared_ptr<Job>& job) {
  if (const auto path = m_sections.find(job.get())) show(*path);
}

void GridMode::update(const Jobs& jobs) {
  if (m_sections.update(jobs)) m_collection.reload();
}

void GridMode::deselect() {
  if (m_context.shell.detail) m_context.shell.detail->clearDetail();
  m_collection.mark(std::nullopt);
}

void GridMode::contextMenu(JobMenu& menu, const std::shared_ptr<Job>& job) {
  jobContextMenu(m_context, menu, job);
}

void GridMode::reloadJob(const std::shared_ptr<Job>& job) {
  if (const auto path = m_sections.find(job.get())) m_collection.reloadItem(*path);
}

std::string_view GridMode::name(IndexPath path) const {
  const auto job = m_sections.job(path);
  return job ? std::string_view(job->name) : std::string_view();  // stays valid, because the groups own the job
}

GridItem GridMode::item(IndexPath path) const {
  const auto job = m_sections.job(path);
  if (!job) return {};
  const Localize& localize = m_context.foundation.localize;
  GridItem item{.name = job->name, .icon = job->displayIcon(localize), .isSecondary = job->isDisabled()};
  if (!job->kind.isEditable(m_context.foundation.defaults.editSystemJobs())) item.noWriteBadge = noWriteImage(localize);
  item.failedBadge = failureMark(m_context, *job);
  if (item.failedBadge) item.toolTip = runsToolTip(m_context, *job);
  return item;
}

std::string GridMode::header(std::size_t section) const {
  return section < sections().size() ? m_context.kinds.title(sections()[section].kind) : std::string();
}

void GridMode::selectionDidChange(std::optional<IndexPath> path) {
  if (!path) return;
  if (m_context.saving.isBusy()) return;  // what is being saved isn't lost
  if (m_context.editing.hasUnsavedChanges()) return m_context.mainWindow.unsavedChangesAlert();
  const auto job = m_sections.job(*path);
  if (!job) return;
  m_context.selection.select(job);
}

void GridMode::markedItemWasClicked(IndexPath path) {
  const auto job = m_sections.job(path);
  const auto selected = m_context.selection.job();
  const bool isShown = job && selected && job->url.equalTo(selected->url);
  if (!isShown) selectionDidChange(path);
}

JobMenu GridMode::menuForItem(IndexPath path) {
  return menuForJob(m_context, m_sections.job(path));
}

std::optional<URL> GridMode::dragItems(const std::vector<IndexPath>& paths) const {
  const auto job = paths.empty() ? nullptr : m_sections.job(paths.front());
  return job ? draggedURL(*job) : std::nullopt;
}

}  // namespace mirvel
