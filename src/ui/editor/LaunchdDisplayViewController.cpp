#include "ui/editor/LaunchdDisplayViewController.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <algorithm>
#include <iterator>

#include "core/editor/EditorTexts.h"
#include "core/editor/JobProblems.h"
#include "core/mainwindow/MenuController.h"
#include "core/runs/RunStateTexts.h"
#include "core/session/Platform.h"
#include "ui/editor/BrowserSection.h"
#include "ui/editor/FocusPlace.h"
#include "ui/editor/GeneralSection.h"
#include "ui/editor/KeyValueSection.h"
#include "ui/editor/LaunchdViewController.h"
#include "ui/editor/NotesSection.h"
#include "ui/editor/RunsSection.h"
#include "ui/editor/WhenSection.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

RunDetails detailsOf(const Launchd& job, const EditorContext& context) {
  const double now = context.platform.clock.secondsSince1970();
  return runDetails(job, context.runs, context.moments, now, context.foundation.localize);
}

}  // namespace

LaunchdDisplayViewController::LaunchdDisplayViewController(const EditorContext& theContext)
    : LaunchdViewController(theContext),
      m_problems(new ProblemsSummary(theContext)),
      m_problemsChanged(theContext.problems.changed().subscribe([this] { m_problems->update(context()); })),
      m_runsChanged(theContext.runs.changed().subscribe([this](const Jobs& jobs) { runsChanged(jobs); })),
      m_editButton(new QPushButton(qt(EditorTexts(localize()).edit()))) {
  pane().insertWidget(0, m_problems);
  auto* bar = new ButtonBar;
  auto* reveal = new QPushButton(qt(localize().revealInFinder()));
  bar->row().addWidget(reveal);
  bar->row().addStretch();
  bar->row().addWidget(m_editButton);
  pane().addWidget(bar);
  m_editButton->setEnabled(false);
  connect(reveal, &QPushButton::clicked, this, [this] { context().menus.perform(Command::RevealInFinder); });
  connect(m_editButton, &QPushButton::clicked, this, [this] { context().menus.perform(Command::Edit); });
}

void LaunchdDisplayViewController::updateDetail() {
  m_editButton->setEnabled(false);
  const auto job = selectedJob();
  if (!job) return;
  m_editButton->setEnabled(job->kind.isEditable(context().foundation.defaults.editSystemJobs()));
  Shown shown{.path = job->url.text(),
              .general = GeneralRules::display(*job, context().kinds, localize()),
              .record = job->plist().clone(),
              .runs = detailsOf(*job, context()),
              .orderObstacles = context().menus.context().orderObstacles};
  if (m_shown == shown) return;
  const FocusPlace place(*this);
  updateSections();
  place.restore();
  m_shown = std::move(shown);
}

void LaunchdDisplayViewController::updateIcon() {
  const auto job = selectedJob();
  if (!job) return;
  for (Section* const section : sections()) section->updateIcon(*job);
}

void LaunchdDisplayViewController::clearDetail() {
  m_shown.reset();
  dropSections();
}

void LaunchdDisplayViewController::hideEvent(QHideEvent* event) {
  m_shown.reset();  // the note, which isn't compared, may change in the editor
  LaunchdViewController::hideEvent(event);
}

std::vector<StackEntry> LaunchdDisplayViewController::entries(const Launchd& launchd) const {
  auto result = displayStack(launchd.plist(), localize());
  const bool isKnown = !detailsOf(launchd, context()).lines.empty();
  if (isKnown) result.insert(std::next(result.begin()), {StackSection::Runs, RunStateTexts(localize()).runs()});
  return result;
}

/// A state that has changed for one job is seen at once; that of another one doesn't matter here.
void LaunchdDisplayViewController::runsChanged(const Jobs& jobs) {
  const auto job = selectedJob();
  const auto isShown = [&](const auto& changed) { return changed->url.equalTo(job->url); };
  if (!m_shown || !job || (!jobs.empty() && std::none_of(jobs.begin(), jobs.end(), isShown))) return;
  updateDetail();
}

Section* LaunchdDisplayViewController::makeSection(StackSection section) {
  switch (section) {
    case StackSection::General:
      return new GeneralDisplaySection(context());
    case StackSection::Runs:
      return new RunsSection(context());
    case StackSection::When:
      return new WhenDisplaySection(context());
    case StackSection::LaunchEvents:
      return new BrowserSection(context(), *browserSchemaOf(section), BrowserModel::Access::ReadOnly);
    case StackSection::Notes:
      return new NotesSection(context());
    default:
      return new KeysSection(context(), section);
  }
}

}  // namespace mirvel::ui
