#include "ui/editor/LaunchdDisplayViewController.h"

#include <QHBoxLayout>
#include <QPushButton>

#include "ui/editor/ButtonBar.h"
#include "ui/editor/FocusPlace.h"
#include "ui/editor/GeneralDisplaySection.h"
#include "ui/editor/KeysSection.h"
#include "ui/editor/NotesSection.h"
#include "ui/editor/WhenDisplaySection.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

LaunchdDisplayViewController::LaunchdDisplayViewController(Program& theProgram, IconLoader& icons)
    : LaunchdViewController(theProgram), m_icons(icons), m_editButton(new QPushButton(qt(localize().edit()))) {
  auto* bar = new ButtonBar;
  auto* reveal = new QPushButton(qt(localize().revealInFinder()));
  bar->row().addWidget(reveal);
  bar->row().addStretch();
  bar->row().addWidget(m_editButton);
  pane().addWidget(bar);
  m_editButton->setEnabled(false);
  connect(reveal, &QPushButton::clicked, this, [this] { program().menus.perform(Command::revealInFinder); });
  connect(m_editButton, &QPushButton::clicked, this, [this] { program().menus.perform(Command::edit); });
}

void LaunchdDisplayViewController::updateDetail() {
  m_editButton->setEnabled(false);
  const auto job = selectedJob();
  if (!job) return;
  m_editButton->setEnabled(job->kind.isEditable(program().foundation.defaults.editSystemJobs()));
  Shown shown{
      .path = job->url.text(), .general = GeneralRules::display(program(), *job), .record = job->plist().clone()};
  if (m_shown == shown) return;
  const FocusPlace place(*this);
  const bool isSameJob = m_shownPath == shown.path;
  rebuildSections();
  if (isSameJob) place.restore();  // a note is being typed, say
  m_shownPath = shown.path;
  m_shown = std::move(shown);
}

void LaunchdDisplayViewController::updateIcon() {
  m_shown.reset();  // another picture may have the same name
  updateDetail();
}

void LaunchdDisplayViewController::clearDetail() {
  m_shown.reset();
  m_shownPath.clear();
  dropSections();
}

void LaunchdDisplayViewController::hideEvent(QHideEvent* event) {
  m_shown.reset();  // the editor may write another note
  LaunchdViewController::hideEvent(event);
}

std::vector<StackEntry> LaunchdDisplayViewController::entries(const Launchd& launchd) const {
  return displayStack(launchd.plist(), localize());
}

Section* LaunchdDisplayViewController::makeSection(StackSection section) {
  switch (section) {
    case StackSection::general:
      return new GeneralDisplaySection(program(), m_icons);
    case StackSection::when:
      return new WhenDisplaySection(program());
    case StackSection::notes:
      return new NotesSection(program());
    default:
      return new KeysSection(program(), section);
  }
}

}  // namespace mirvel::ui
