#include "ui/editor/ScheduledRuleEditor.h"

#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "core/explain/RuleText.h"
#include "core/locale/Dates.h"
#include "ui/editor/RuleRowView.h"
#include "ui/support/Controls.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

ScheduledRuleEditor::ScheduledRuleEditor(ScheduledController& controller, QWidget* parent)
    : QWidget(parent), m_localize(controller.localize()), m_editor(controller, this), m_layout(new QVBoxLayout(this)) {
  m_layout->setContentsMargins(0, 0, 0, 0);
  m_layout->setSpacing(style()->pixelMetric(QStyle::PM_LayoutLeftMargin));
  setAccessibleName(qt(m_localize.scheduled()));
}

void ScheduledRuleEditor::setEditable(bool isEditable) {
  if (isEditable == m_isEditable) return;
  m_isEditable = isEditable;
  rowsWereLoaded();
}

void ScheduledRuleEditor::addRow() {
  m_editor.addRow();
  if (!m_views.empty()) m_views.back()->controls().front()->setFocus(Qt::OtherFocusReason);
}

void ScheduledRuleEditor::rowsWereLoaded() {
  if (m_isEditable) {
    delete std::exchange(m_sentences, nullptr);
    showRows();
  } else {
    while (!m_views.empty()) dismiss(m_views.size() - 1);
    showSentences();
  }
}

/// Views that show their row already are kept, even if rows before them have been added or removed.
void ScheduledRuleEditor::showRows() {
  const std::size_t count = m_editor.numberOfRows();
  const std::size_t fewer = std::min(count, m_views.size());
  std::size_t start = 0;
  while (start < fewer && m_views[start]->shows(m_editor.row(start))) ++start;
  std::size_t end = 0;
  while (end < fewer - start && m_views[m_views.size() - 1 - end]->shows(m_editor.row(count - 1 - end))) ++end;
  while (m_views.size() > count) dismiss(m_views.size() - 1 - end);
  while (m_views.size() < count) insertView(m_views.size() - end);
  for (std::size_t row = start; row + end < count; ++row) m_views[row]->showRow(m_editor, row);
  updateMarks();
  updateTabOrder();
}

void ScheduledRuleEditor::showSentences() {
  QStringList lines;
  for (std::size_t row = 0; row < m_editor.numberOfRows(); ++row) {
    const auto rule = m_editor.rule(row);
    if (rule) lines.append(qt(explain::ruleText(*rule, m_localize, explain::TimeForm::OfTheLocale)));
    const std::string unshown = m_editor.unshownEntries(row);
    if (!unshown.empty()) lines.append(qt(unshown));
  }
  if (!m_sentences) {
    m_sentences = new ValueText({}, this);
    m_sentences->setAccessibleName(accessibleName());
    m_layout->addWidget(m_sentences);
  }
  replaceText(*m_sentences, lines.join(QLatin1Char('\n')));
}

void ScheduledRuleEditor::insertView(std::size_t row) {
  auto* view = new RuleRowView(m_localize, this);
  view->showRow(m_editor, row);
  connect(view, &RuleRowView::childChosen, this, [this, view](std::size_t position, int child) {
    m_editor.chooseChild(rowOf(*view), position, static_cast<std::size_t>(child));
  });
  connect(view, &RuleRowView::numberEdited, this,
          [this, view](const QString& text) { m_editor.setNumber(rowOf(*view), utf8(text)); });
  connect(view, &RuleRowView::timeEdited, this,
          [this, view](QTime time) { m_editor.setTime(rowOf(*view), Date::timeOfDay(time.hour(), time.minute())); });
  connect(view, &RuleRowView::addClicked, this, [this, view] { addAfter(*view); });
  connect(view, &RuleRowView::removeClicked, this, [this, view] { remove(*view); });
  m_layout->insertWidget(static_cast<int>(row), view);
  view->show();  // the layout would do so later, and until then the row couldn't get the focus
  m_views.insert(m_views.begin() + static_cast<std::ptrdiff_t>(row), view);
}

std::size_t ScheduledRuleEditor::rowOf(const RuleRowView& view) const {
  return static_cast<std::size_t>(std::find(m_views.begin(), m_views.end(), &view) - m_views.begin());
}

void ScheduledRuleEditor::addAfter(const RuleRowView& view) {
  const std::size_t row = rowOf(view);
  m_editor.addRowAfter(row);
  if (row + 1 < m_views.size()) m_views[row + 1]->controls().front()->setFocus(Qt::TabFocusReason);
}

void ScheduledRuleEditor::remove(const RuleRowView& view) {
  const std::size_t row = rowOf(view);
  // Before the focused control is removed: Qt would move the focus to an arbitrary one.
  if (m_views.size() > 1) {
    m_views[row + 1 < m_views.size() ? row + 1 : row - 1]->removeButton().setFocus(Qt::TabFocusReason);
  }
  m_editor.removeRow(row);
}

void ScheduledRuleEditor::rowWasAdded(std::size_t row) {
  if (!m_isEditable) return rowsWereLoaded();
  insertView(row);
  updateMarks();
  updateTabOrder();
}

void ScheduledRuleEditor::rowWasRemoved(std::size_t row) {
  if (!m_isEditable) return rowsWereLoaded();
  dismiss(row);
  updateMarks();
}

void ScheduledRuleEditor::dismiss(std::size_t row) {
  RuleRowView* view = m_views[row];
  m_views.erase(m_views.begin() + static_cast<std::ptrdiff_t>(row));
  m_layout->removeWidget(view);
  discard(view);
}

void ScheduledRuleEditor::rowChoiceChanged(std::size_t row, std::size_t /*position*/) {
  if (!m_isEditable) return rowsWereLoaded();
  m_views[row]->showRow(m_editor, row);
  updateMarks();
  updateTabOrder();
}

void ScheduledRuleEditor::valueWasEntered() {
  if (!m_isEditable) return rowsWereLoaded();
  updateMarks();
}

void ScheduledRuleEditor::rowWasRefused(std::size_t row) {
  if (m_isEditable) m_views[row]->focusOnNumber();
}

void ScheduledRuleEditor::updateMarks() {
  const auto problems = m_editor.problems();
  for (std::size_t row = 0; row < m_views.size(); ++row) {
    m_views[row]->mark(problems[row]);
    m_views[row]->showUnshownEntries(qt(m_editor.unshownEntries(row)));
  }
}

void ScheduledRuleEditor::updateTabOrder() {
  // Qt appends new widgets to the window's tab order, and `setTabOrder` ignores widgets that can't have the focus.
  setFocusPolicy(Qt::TabFocus);
  QWidget* before = this;
  for (const RuleRowView* view : m_views) {
    for (QWidget* control : view->controls()) {
      setTabOrder(before, control);
      before = control;
    }
  }
  setFocusPolicy(Qt::NoFocus);
}

}  // namespace mirvel::ui
