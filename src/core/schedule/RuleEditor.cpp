#include "core/schedule/RuleEditor.h"

#include <algorithm>
#include <utility>

namespace mirvel::Scheduled {

template <typename Tell>
void RuleEditor::changed(Tell tellView) {
  if (m_controller.isBuilding()) return;
  if (m_view) tellView(*m_view);
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
  for (const RuleRow& row : m_rows) {
    if (const auto rule = ruleOf(row, m_controller.criteria(), m_controller.numbers())) result.push_back(*rule);
  }
  return result;
}

std::vector<std::optional<NumberProblem>> RuleEditor::problems() const {
  return numberProblems(rows(), m_controller.texts(), m_controller.numbers());
}

bool RuleEditor::isValid() const {
  const auto found = problems();
  return std::none_of(found.begin(), found.end(), [](const auto& problem) { return problem.has_value(); });
}

std::optional<InvalidField> RuleEditor::refuse() {
  const auto found = problems();
  const auto first = std::find_if(found.begin(), found.end(), [](const auto& problem) { return problem.has_value(); });
  if (first == found.end()) return std::nullopt;
  const auto row = static_cast<std::size_t>(first - found.begin());
  if (m_view) m_view->rowWasRefused(row);
  const Localize& localize = m_controller.localize();
  const std::string& kind = m_rows[row].criteria.front()->name();
  return InvalidField{.message = localize.ruleCantBeSaved(localize.int_(static_cast<std::int64_t>(row) + 1), kind),
                      .reason = text(**first, localize)};
}

void RuleEditor::addRowBehind(std::size_t row) {
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
  m_rows[row] = rechosen(m_rows[row], position, siblings[child]);
  changed([=](RuleEditorType& view) { view.rowWasRechosen(row, position); });
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
