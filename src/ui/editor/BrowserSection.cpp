#include "ui/editor/BrowserSection.h"

#include <QVBoxLayout>

#include "core/schedule/ScheduledController.h"
#include "core/session/Foundation.h"
#include "core/session/Selection.h"
#include "ui/editor/BrowserView.h"
#include "ui/editor/FieldCell.h"

namespace mirvel::ui {

BrowserSection::BrowserSection(const EditorContext& theContext, const BrowserSchema& schema,
                               BrowserModel::Access access)
    : Section(theContext),
      m_field{.key = schema.text(), .control = Field::Control::Table, .help = schema.help},
      m_browser(schema, localize(), theContext.schedules.numbers(),
                [this](Editing::Step step, const std::string& place) { write(step, place); }),
      m_view(new BrowserView(m_browser, theContext, access)) {
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  if (access == BrowserModel::Access::ReadOnly) {
    layout->addWidget(m_view);
  } else {
    makeCell();
  }
}

/// Deletes the view before the browser.
BrowserSection::~BrowserSection() {
  m_path.clear();  // an editor that is still open must not write
  delete m_view;
}

void BrowserSection::makeCell() {
  auto* const problems = makeProblemsView([this](const std::string& key) { return key == m_field.key; });
  auto* const cell = new FieldCell(m_field, *m_view, localize(), *problems);
  cell->isRemovable = [this] { return isRemovable(); };
  cell->remove = [this] { remove(); };
  layout()->addWidget(cell);
}

void BrowserSection::fill(const Launchd& launchd) {
  m_path = launchd.url.text();
  m_browser.fill(launchd.plist(), context().editing.unfinished());
  m_view->follow();
}

std::optional<InvalidField> BrowserSection::refuse() {
  auto invalid = m_browser.refuse();
  if (invalid) m_view->showRefused();
  return invalid;
}

/// An edit that ends after another job has been selected, such as the naming of an item, isn't written to that job.
void BrowserSection::write(Editing::Step step, const std::string& place) {
  const auto selected = context().selection.launchd();
  if (!selected || selected->url.text() != m_path) return;
  if (Launchd* const job = markJobChanged(step, place)) {
    m_browser.write(job->plist(), context().editing.unfinished());
  }
}

bool BrowserSection::isRemovable() const {
  const auto job = context().selection.launchd();
  return !m_browser.items(0).empty() || (job && job->plist().savedValue(m_browser.schema().key));
}

void BrowserSection::remove() {
  Launchd* const job = markJobChanged();
  if (!job) return;
  if (!job->plist().replaceTree(m_browser.schema().key, std::nullopt)) return;
  context().editing.unfinished().trees.erase(std::string(m_field.key));
  configure(*job);
}

const BrowserSchema* browserSchemaOf(StackSection section) {
  switch (section) {
    case StackSection::LaunchEvents:
      return browserSchema("LaunchEvents");
    case StackSection::MachServices:
      return browserSchema("MachServices");
    case StackSection::Sockets:
      return browserSchema("Sockets");
    default:
      return nullptr;
  }
}

}  // namespace mirvel::ui
