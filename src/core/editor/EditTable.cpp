#include "core/editor/EditTable.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <set>
#include <utility>

#include "core/editor/EditorTexts.h"
#include "core/locale/Collator.h"
#include "core/locale/Localize.h"

namespace mirvel {

namespace {

bool isEmpty(const TableRow& row) {
  return std::all_of(row.cells.begin(), row.cells.end(), [](const std::string& cell) { return cell.empty(); });
}

const std::string& keyOf(const TableRow& row) {
  return row.cells.front();
}

}  // namespace

EditTable::EditTable(TableFormat format, Changed changed) : m_format(format), m_changed(std::move(changed)) {}

bool EditTable::isSortable() const {
  return std::any_of(m_format.columns.begin(), m_format.columns.end(),
                     [](const TableFormat::Column& column) { return !column.title.empty(); });
}

std::vector<EditTable::Offer> EditTable::offers() const {
  std::vector<Offer> result;
  for (const TableFormat::MenuItem& item : m_format.menu) {
    const bool isThere =
        std::any_of(m_rows.begin(), m_rows.end(), [&](const TableRow& row) { return keyOf(row) == item.title; });
    result.push_back({.item = item, .isEnabled = !isThere});
  }
  return result;
}

void EditTable::fill(const std::vector<TableRow>& rows) {
  // Rows without text aren't in the record, so a refill after an undo elsewhere must not remove them.
  if (filledRows(rows) == filledRows(m_rows)) return;
  std::vector<TableRow> result = rows;
  // Unfinished rows may include the empty ones already.
  if (std::none_of(rows.begin(), rows.end(), isEmpty)) {
    std::copy_if(m_rows.begin(), m_rows.end(), std::back_inserter(result), isEmpty);
  }
  m_rows = std::move(result);
  for (TableRow& row : m_rows) row.cells.resize(m_format.columns.size());
  m_reported = filledRows(m_rows);
  m_order.resize(m_rows.size());
  std::iota(m_order.begin(), m_order.end(), 0);
  updateOrder();
}

std::size_t EditTable::add(std::string text) {
  TableRow row{.isOn = true, .cells = std::vector<std::string>(m_format.columns.size())};
  row.cells.front() = std::move(text);
  m_order.push_back(m_rows.size());
  m_rows.push_back(std::move(row));
  changed(Editing::Step::Begins);
  return m_order.size() - 1;
}

bool EditTable::remove(std::size_t position) {
  if (!isRow(position)) return false;
  const std::size_t index = m_order[position];
  m_rows.erase(m_rows.begin() + static_cast<std::ptrdiff_t>(index));
  m_order.erase(m_order.begin() + static_cast<std::ptrdiff_t>(position));
  for (std::size_t& other : m_order) other -= other > index ? 1 : 0;  // the rows after it have moved up
  changed(Editing::Step::Begins);
  return true;
}

void EditTable::setCell(std::size_t position, std::size_t column, std::string text) {
  if (!isRow(position) || column >= m_format.columns.size()) return;
  const std::size_t index = m_order[position];
  m_rows[index].cells[column] = std::move(text);
  changed(Editing::Step::Continues, std::to_string(index) + "." + std::to_string(column));
}

void EditTable::setBox(std::size_t position, bool isOn) {
  if (!isRow(position)) return;
  m_rows[m_order[position]].isOn = isOn;
  changed(Editing::Step::Begins);
}

void EditTable::changed(Editing::Step step, const std::string& cell) {
  auto rows = filledRows(m_rows);
  if (rows == m_reported) return;  // a row without text is no edit of the record
  m_reported = std::move(rows);
  if (m_changed) m_changed(step, cell);
}

void EditTable::sort(std::size_t column, bool isAscending, const Collator& collator) {
  if (column >= m_format.columns.size()) return;
  m_sorting.emplace(Sorting{column, isAscending, collator});
  updateOrder();
}

void EditTable::updateOrder() {
  if (!m_sorting) return;
  std::stable_sort(m_order.begin(), m_order.end(), [this](std::size_t a, std::size_t b) {
    if (isEmpty(m_rows[a]) || isEmpty(m_rows[b])) return isEmpty(m_rows[b]) && !isEmpty(m_rows[a]);
    const auto& [column, isAscending, collator] = *m_sorting;
    const int order = collator.localizedStandardCompare(m_rows[a].cells[column], m_rows[b].cells[column]);
    return isAscending ? order < 0 : order > 0;
  });
}

std::optional<std::size_t> EditTable::refusedPosition() const {
  const auto row = m_format.isDictionary ? unfitForDictionary(m_rows) : std::nullopt;
  if (!row) return std::nullopt;
  return static_cast<std::size_t>(std::distance(m_order.begin(), std::find(m_order.begin(), m_order.end(), *row)));
}

std::optional<InvalidField> EditTable::refuse(const std::string& key, const Localize& localize) const {
  const auto position = refusedPosition();
  if (!position) return std::nullopt;
  const std::string& name = keyOf(shownRow(*position));
  return InvalidField{.message = EditorTexts(localize).fieldCantBeSaved(key),
                      .reason = name.empty() ? EditorTexts(localize).aRowHasNoName()
                                             : EditorTexts(localize).moreThanOneRowIsCalled(name)};
}

std::vector<TableRow> filledRows(const std::vector<TableRow>& rows) {
  std::vector<TableRow> result;
  std::remove_copy_if(rows.begin(), rows.end(), std::back_inserter(result), isEmpty);
  return result;
}

std::optional<std::size_t> unfitForDictionary(const std::vector<TableRow>& rows) {
  std::set<std::string_view> keys;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (isEmpty(rows[row])) continue;
    if (keyOf(rows[row]).empty() || !keys.insert(keyOf(rows[row])).second) return row;
  }
  return std::nullopt;
}

std::vector<TableRow> rowsOf(const jobfile::StringMap<bool>& entries) {
  std::vector<TableRow> rows;
  for (const auto& [key, isOn] : entries) rows.push_back({.isOn = isOn, .cells = {key}});
  return rows;
}

std::vector<TableRow> rowsOf(const jobfile::StringMap<std::string>& entries) {
  std::vector<TableRow> rows;
  for (const auto& [key, value] : entries) rows.push_back({.cells = {key, value}});
  return rows;
}

std::vector<TableRow> rowsOf(const std::vector<std::string>& texts) {
  std::vector<TableRow> rows;
  rows.reserve(texts.size());
  for (const std::string& text : texts) rows.push_back({.cells = {text}});
  return rows;
}

namespace {

template <typename Container, typename Insert>
void collect(const std::vector<TableRow>& rows, std::optional<Container>& result, Insert insert) {
  result.emplace();
  for (const TableRow& row : filledRows(rows)) insert(*result, row);
  if (result->empty()) result.reset();
}

}  // namespace

void fromRows(const std::vector<TableRow>& rows, std::optional<jobfile::StringMap<bool>>& entries) {
  collect(rows, entries, [](auto& result, const TableRow& row) { result.insert_or_assign(keyOf(row), row.isOn); });
}

void fromRows(const std::vector<TableRow>& rows, std::optional<jobfile::StringMap<std::string>>& entries) {
  collect(rows, entries, [](auto& result, const TableRow& row) { result.insert_or_assign(keyOf(row), row.cells[1]); });
}

void fromRows(const std::vector<TableRow>& rows, std::optional<std::vector<std::string>>& texts) {
  collect(rows, texts, [](auto& result, const TableRow& row) { result.push_back(keyOf(row)); });
}

}  // namespace mirvel
