#include "ui/editor/LaunchdViewController.h"

#include <QVBoxLayout>

#include "ui/editor/HeaderSection.h"
#include "ui/editor/SectionGrid.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

LaunchdViewController::LaunchdViewController(Program& program)
    : m_program(program),
      m_pane(new QVBoxLayout(this)),
      m_scrollView(new StackScrollView(qt(program.foundation.localize.details()))) {
  m_pane->setContentsMargins(0, 0, 0, 0);
  m_pane->setSpacing(0);
  m_pane->addWidget(m_scrollView, 1);
}

std::shared_ptr<Launchd> LaunchdViewController::selectedJob() const {
  return m_program.selection.launchd();
}

void LaunchdViewController::rebuildSections() {
  const auto job = selectedJob();
  if (!job) return;
  auto* stack = new QWidget;
  m_stackView = new QVBoxLayout(stack);
  m_stackView->setContentsMargins(SectionGrid::paneMargins());
  m_stackView->setSpacing(SectionGrid::sectionSpacing);
  dropSections();
  for (const StackEntry& entry : entries(*job)) {
    Section* const section = makeSection(entry.section);
    if (!section) continue;
    section->setObjectName(QStringLiteral("section%1").arg(static_cast<int>(entry.section)));
    addSection(*section, job, entry.title);
  }
  m_stackView->addStretch();
  m_scrollView->setWidget(stack);  // its height is known by now
}

void LaunchdViewController::addSection(Section& section, const std::shared_ptr<Launchd>& launchd,
                                       const std::optional<std::string>& title) {
  if (title) m_stackView->addWidget(new HeaderSection(*title));
  m_stackView->addWidget(&section);
  m_sections.push_back(&section);
  section.configure(launchd);
}

void LaunchdViewController::dropSections() {
  m_sections.clear();
  QWidget* const old = m_scrollView->takeWidget();
  if (!old) return;
  old->hide();
  old->deleteLater();  // it may be one of its controls that brought this about
}

}  // namespace mirvel::ui
