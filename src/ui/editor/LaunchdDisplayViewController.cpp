#include "ui/editor/LaunchdDisplayViewController.h"

#include <QHBoxLayout>
#include <QPushButton>

#include "core/editor/EditorTexts.h"
#include "core/editor/JobProblems.h"
#include "core/mainwindow/MenuController.h"
#include "ui/editor/BrowserSection.h"
#include "ui/editor/FocusPlace.h"
#include "ui/editor/GeneralSection.h"
#include "ui/editor/KeyValueSection.h"
#include "ui/editor/LaunchdViewController.h"
#include "ui/editor/NotesSection.h"
#include "ui/editor/WhenSection.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

LaunchdDisplayViewController::LaunchdDisplayViewController(const EditorContext& theContext)
    : LaunchdViewController(theContext),
      m_problems(new ProblemsSummary(theContext)),
      m_problemsChanged(theContext.problems.changed().subscribe([this] { m_problems->update(context()); })),
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
              .record = job->plist().clone()};
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
  return displayStack(launchd.plist(), localize());
}

Section* LaunchdDisplayViewController::makeSection(StackSection section) {
  switch (section) {
    case StackSection::General:
      return new GeneralDisplaySection(context());
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
