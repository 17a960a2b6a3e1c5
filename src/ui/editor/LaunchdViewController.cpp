#include "ui/editor/LaunchdViewController.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>

#include "core/editor/EditorTexts.h"
#include "core/editor/FieldSearch.h"
#include "core/session/Selection.h"
#include "ui/editor/SectionGrid.h"
#include "ui/support/Controls.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

QWidget* makeHeader(const std::string& title) {
  auto* const header = new QWidget;
  auto* const layout = new QHBoxLayout(header);
  layout->setContentsMargins(0, 8, 0, 0);
  auto* const titleTextField = new QLabel(qt(title));
  titleTextField->setTextFormat(Qt::PlainText);
  QFont bold = titleTextField->font();
  bold.setBold(true);
  titleTextField->setFont(bold);
  layout->addWidget(titleTextField);
  layout->addWidget(new Hairline, 1);
  header->setAccessibleName(qt(title));
  return header;
}

}  // namespace

LaunchdViewController::LaunchdViewController(const EditorContext& theContext)
    : m_context(theContext),
      m_pane(new QVBoxLayout(this)),
      m_scrollView(new StackScrollView(qt(EditorTexts(theContext.foundation.localize).details()))) {
  m_pane->setContentsMargins(0, 0, 0, 0);
  m_pane->setSpacing(0);
  m_pane->addWidget(m_scrollView, 1);
}

std::shared_ptr<Launchd> LaunchdViewController::selectedJob() const {
  return m_context.selection.launchd();
}

std::vector<Section*> LaunchdViewController::sections() const {
  std::vector<Section*> result;
  for (const Shown& shown : m_shown) result.push_back(shown.section);
  return result;
}

void LaunchdViewController::updateSections() {
  const auto job = selectedJob();
  if (!job) return;
  if (job->url.text() != m_path) dropSections();
  m_path = job->url.text();
  const bool isNew = !m_stackView;
  if (isNew) makeStack();
  const auto wanted = entries(*job);
  removeSectionsOtherThan(wanted);
  bool isInserted = false;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    if (i >= m_shown.size() || m_shown[i].id != wanted[i].section) {
      isInserted = i < m_shown.size() || isInserted;
      insertSection(i, wanted[i]);
    }
    m_shown[i].section->configure(*job);
  }
  // Not before the sections are filled, so that the scroll area knows their height.
  if (isNew) m_scrollView->setWidget(m_stackView->parentWidget());
  if (isInserted) restoreTabOrder();
}

void LaunchdViewController::makeStack() {
  auto* const stack = new QWidget;
  m_stackView = new QVBoxLayout(stack);
  m_stackView->setContentsMargins(SectionGrid::paneMargins());
  m_stackView->setSpacing(SectionGrid::sectionSpacing);
  m_stackView->addStretch(1);  // all that is left, so that no section grows
}

void LaunchdViewController::removeSectionsOtherThan(const std::vector<StackEntry>& entries) {
  std::erase_if(m_shown, [&](const Shown& shown) {
    const bool isWanted =
        std::any_of(entries.begin(), entries.end(), [&](const StackEntry& entry) { return entry.section == shown.id; });
    if (isWanted) return false;
    for (QWidget* const widget : {shown.header, static_cast<QWidget*>(shown.section)}) {
      if (widget) m_stackView->removeWidget(widget);
      discard(widget);
    }
    return true;
  });
}

void LaunchdViewController::insertSection(std::size_t position, const StackEntry& entry) {
  const Shown* const next = position < m_shown.size() ? &m_shown[position] : nullptr;
  const int index = next ? m_stackView->indexOf(next->header ? next->header : next->section)
                         : m_stackView->count() - 1;  // before the stretch
  Shown shown{.id = entry.section,
              .title = entry.title.value_or(""),
              .header = entry.title ? makeHeader(*entry.title) : nullptr,
              .section = makeSection(entry.section)};
  shown.section->setObjectName(QStringLiteral("section%1").arg(static_cast<int>(entry.section)));
  m_stackView->insertWidget(index, shown.section);
  if (shown.header) m_stackView->insertWidget(index, shown.header);
  m_shown.insert(m_shown.begin() + static_cast<std::ptrdiff_t>(position), shown);
}

/// Sorts the tab order by section: Qt appends the controls of an inserted section at the end.
void LaunchdViewController::restoreTabOrder() {
  QWidget* const stack = m_stackView->parentWidget();
  QWidgetList chain;
  for (QWidget* next = stack->nextInFocusChain(); next != stack; next = next->nextInFocusChain()) {
    if (stack->isAncestorOf(next) && next->focusPolicy() != Qt::NoFocus) chain.append(next);
  }
  const auto sectionOf = [this](const QWidget* control) {
    return std::find_if(m_shown.begin(), m_shown.end(),
                        [control](const Shown& shown) { return shown.section->isAncestorOf(control); });
  };
  std::stable_sort(chain.begin(), chain.end(),
                   [&](const QWidget* a, const QWidget* b) { return sectionOf(a) < sectionOf(b); });
  for (qsizetype i = 1; i < chain.size(); ++i) setTabOrder(chain[i - 1], chain[i]);
}

bool LaunchdViewController::narrow(const FieldSearch& search) {
  bool isAnyLeft = false;
  for (const Shown& shown : m_shown) {
    const bool isThisLeft = isLeft(shown, search);
    if (shown.header) shown.header->setVisible(isThisLeft);
    shown.section->setVisible(isThisLeft);
    isAnyLeft = isAnyLeft || isThisLeft;
  }
  return isAnyLeft;
}

/// A section whose title matches is shown as a whole.
bool LaunchdViewController::isLeft(const Shown& shown, const FieldSearch& search) const {
  if (search.isEmpty() || search.matches({shown.title})) {
    (void)shown.section->narrow(FieldSearch({}, localize()));
    return true;
  }
  if (shown.section->narrow(search) || search.matchesAnyOf(shown.id)) return true;
  const auto job = selectedJob();
  return job && isEdited(shown.id, job->plist(), readRecord(job->plist()), m_context.editing.unfinished());
}

void LaunchdViewController::dropSections() {
  m_shown.clear();
  m_stackView = nullptr;
  m_path.clear();
  discard(m_scrollView->takeWidget());
}

ButtonBar::ButtonBar(QWidget* parent) : QWidget(parent), m_row(new QHBoxLayout) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(new Hairline);
  m_row->setContentsMargins(20, 10, 20, 10);
  m_row->setSpacing(8);
  layout->addLayout(m_row);
}

}  // namespace mirvel::ui
