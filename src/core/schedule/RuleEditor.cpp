#include "core/schedule/RuleEditor.h"

#include <algorithm>
#include <utility>

#include "core/schedule/ScheduleTexts.h"
#include "core/schedule/UnshownEntries.h"

namespace mirvel::Scheduled {

template <typename Notify>
void RuleEditor::changed(Notify notifyView) {
  if (m_controller.isBuilding()) return;
  if (m_view) notifyView(*m_view);
  if (m_delegate) m_delegate->rulesDidChange();
}

const Criteria& RuleEditor::choices(std::size_t row, std::size_t position) const {
  return m_controller.children(position == 0 ? nullptr : m_rows.at(row).criteria.at(position - 1).get());
}

std::vector<Row> RuleEditor::rows() const {
  std::vector<Row> result;
  for (const RuleRow& row : m_rows) result.push_back(row.displayValues);
  return result;
}

std::vector<ScheduledType> RuleEditor::rules() const {
  std::vector<ScheduledType> result;
  for (std::size_t i = 0; i < m_rows.size(); ++i) {
    if (const auto shown = rule(i)) result.push_back(*shown);
  }
  return result;
}

std::optional<ScheduledType> RuleEditor::rule(std::size_t row) const {
  return ruleOf(m_rows.at(row), m_controller.criteria(), m_controller.numbers());
}

AppliedRules RuleEditor::applied() const {
  return appliedRules(m_rows, m_controller.texts(), m_controller.numbers());
}

std::string RuleEditor::unshownEntries(std::size_t row) const {
  if (!m_rows.at(row).origin) return {};
  const auto applied = appliedRules({m_rows[row]}, m_controller.texts(), m_controller.numbers());
  return applied.startCalendarInterval
             ? Scheduled::unshownEntries(applied.startCalendarInterval->intervals, m_controller.localize())
             : std::string();
}

std::vector<std::optional<NumberProblem>> RuleEditor::problems() const {
  return numberProblems(rows(), m_controller.texts(), m_controller.numbers());
}

/// A row that is unchanged since it was loaded doesn't prevent saving, since the file keeps its values. A second repeat
/// interval still does: the file has only one.
std::optional<std::size_t> RuleEditor::refusedRow(const std::vector<std::optional<NumberProblem>>& found) const {
  for (std::size_t row = 0; row < m_rows.size(); ++row) {
    const auto& origin = m_rows[row].origin;
    const bool isAsInFile = origin && origin->row == m_rows[row].displayValues;
    if (found[row] && !(isAsInFile && found[row] != NumberProblem::NotTheFirstInterval)) return row;
  }
  return std::nullopt;
}

bool RuleEditor::isValid() const {
  return !refusedRow(problems());
}

std::optional<InvalidField> RuleEditor::refuse() {
  const auto found = problems();
  const auto refused = refusedRow(found);
  if (!refused) return std::nullopt;
  const std::size_t row = *refused;
  if (m_view) m_view->rowWasRefused(row);
  const Localize& localize = m_controller.localize();
  const std::string& kind = m_rows[row].criteria.front()->name();
  return InvalidField{
      .message = ScheduleTexts(localize).ruleCantBeSaved(localize.int_(static_cast<std::int64_t>(row) + 1), kind),
      .reason = text(*found[row], localize)};
}

void RuleEditor::addRowAfter(std::size_t row) {
  if (row < m_rows.size()) insertRow(row + 1);
}

void RuleEditor::insertRow(std::size_t row) {
  m_rows.insert(m_rows.begin() + static_cast<std::ptrdiff_t>(row), newRow(pathOfNewRow(row)));
  changed([row](RuleEditorType& view) { view.rowWasAdded(row); });
}

const Criteria& RuleEditor::pathOfNewRow(std::size_t row) const {
  const Criteria& kinds = m_controller.criteria();
  const auto& paths = m_controller.criteriaRows();
  if (row == 0) return paths.front();
  const auto& kind = m_rows[row - 1].criteria.front();
  const auto index = static_cast<std::size_t>(std::find(kinds.begin(), kinds.end(), kind) - kinds.begin());
  return index == static_cast<std::size_t>(Kind::repeatInterval) ? paths[index + 1] : paths[index];
}

void RuleEditor::removeRow(std::size_t row) {
  if (row >= m_rows.size()) return;
  m_rows.erase(m_rows.begin() + static_cast<std::ptrdiff_t>(row));
  changed([row](RuleEditorType& view) { view.rowWasRemoved(row); });
}

void RuleEditor::chooseChild(std::size_t row, std::size_t position, std::size_t child) {
  if (row >= m_rows.size() || position >= m_rows[row].criteria.size()) return;
  const Criteria& siblings = choices(row, position);
  if (child >= siblings.size() || siblings[child] == m_rows[row].criteria[position]) return;
  m_rows[row] = withChoice(m_rows[row], position, siblings[child]);
  changed([=](RuleEditorType& view) { view.rowChoiceChanged(row, position); });
}

void RuleEditor::setControl(std::size_t row, DisplayValue value) {
  if (row >= m_rows.size()) return;
  Row& values = m_rows[row].displayValues;
  const auto control = std::find_if(values.begin(), values.end(),
                                    [&](const DisplayValue& other) { return other.index() == value.index(); });
  if (control == values.end() || *control == value) return;
  *control = std::move(value);
  changed([](RuleEditorType& view) { view.valueWasEntered(); });
}

void RuleEditor::setRow(std::size_t row, RuleRow content) {
  if (row >= m_rows.size() || m_rows[row] == content) return;
  m_rows[row] = std::move(content);
  changed([](RuleEditorType& view) { view.rowsWereLoaded(); });
}

void RuleEditor::setContent(std::vector<RuleRow> rows) {
  m_rows = std::move(rows);
  rowsWereLoaded();
}

void RuleEditor::rowsWereLoaded() {
  if (m_view) m_view->rowsWereLoaded();
}

}  // namespace mirvel::Scheduled
