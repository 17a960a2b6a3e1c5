#include "ui/editor/JobDetailsView.h"

#include <QVBoxLayout>
#include <utility>

#include "core/editor/EditorTexts.h"
#include "core/session/Selection.h"
#include "ui/editor/GeneralSection.h"
#include "ui/editor/SectionGrid.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

JobDetailsView::JobDetailsView(const EditorContext& context)
    : StackScrollView(qt(EditorTexts(context.foundation.localize).details())), m_context(context) {}

void JobDetailsView::updateDetail() {
  const auto job = m_context.selection.job();
  if (!job) return;
  const Foundation& foundation = m_context.foundation;
  const auto rows = JobDetails::rows(*job, foundation.localize, foundation.roots.home.native());
  std::vector<std::string> labels;
  labels.reserve(rows.size());
  for (const JobDetails::Row& row : rows) labels.push_back(row.label);
  // Refilled in place for the same job, so that selected text and scroll position survive a scan.
  if (m_path != job->url.text() || m_labels != labels) make(rows);
  m_path = job->url.text();
  m_labels = std::move(labels);
  m_general->show(GeneralRules::display(*job, m_context.kinds, foundation.localize));
  for (std::size_t i = 0; i < rows.size(); ++i) replaceText(*m_values[i], shownText(rows[i].text));
}

void JobDetailsView::make(const std::vector<JobDetails::Row>& rows) {
  auto* stack = new QWidget;
  auto* layout = new QVBoxLayout(stack);
  layout->setContentsMargins(SectionGrid::paneMargins());
  layout->setSpacing(SectionGrid::sectionSpacing);
  m_general = new GeneralDisplaySection(m_context);
  layout->addWidget(m_general);
  auto* rowsView = new QWidget;
  auto* grid = new SectionGrid(rowsView);
  m_values.clear();
  for (const JobDetails::Row& row : rows) {
    auto* value = m_values.emplace_back(new ValueText({}));
    if (row.style == JobDetails::Row::Style::Code) value->setCode();
    grid->addText(row.label, *value, 0);
  }
  layout->addWidget(rowsView);
  layout->addStretch();
  setWidget(stack);
}

}  // namespace mirvel::ui
