#include "ui/editor/JobDetailsView.h"

#include <QVBoxLayout>

#include "core/editor/EditorTexts.h"
#include "core/session/Selection.h"
#include "ui/editor/GeneralSection.h"
#include "ui/editor/SectionGrid.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"
#include "ui/support/ValueText.h"

namespace mirvel::ui {

JobDetailsView::JobDetailsView(const EditorContext& context)
    : StackScrollView(qt(EditorTexts(context.foundation.localize).details())), m_context(context) {}

void JobDetailsView::updateDetail() {
  const auto job = m_context.selection.job();
  if (!job) return;
  const Foundation& foundation = m_context.foundation;
  Shown content{.general = GeneralRules::display(*job, m_context.kinds, foundation.localize),
                .rows = JobDetails::rows(*job, foundation.localize, foundation.roots.home.native())};
  if (m_shown == content) return;
  show(content);
  m_shown = std::move(content);
}

void JobDetailsView::updateIcon() {
  m_shown.reset();  // another picture may have the same name
  updateDetail();
}

void JobDetailsView::show(const Shown& content) {
  auto* stack = new QWidget;
  auto* layout = new QVBoxLayout(stack);
  layout->setContentsMargins(SectionGrid::paneMargins());
  layout->setSpacing(SectionGrid::sectionSpacing);
  auto* general = new GeneralDisplaySection(m_context);
  general->show(content.general);
  layout->addWidget(general);
  auto* rows = new QWidget;
  auto* grid = new SectionGrid(rows);
  for (const JobDetails::Row& row : content.rows) {
    auto* value = new ValueText(shownText(row.text));
    if (row.style == JobDetails::Row::Style::Code) value->setCode();
    grid->addText(row.label, *value, 0);
  }
  layout->addWidget(rows);
  layout->addStretch();
  setWidget(stack);
}

}  // namespace mirvel::ui
