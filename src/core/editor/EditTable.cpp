#include "core/editor/EditTable.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <numeric>
#include <tuple>
#include <utility>

#include "core/editor/EditorTexts.h"
#include "core/editor/LooksSecret.h"
#include "core/editor/ParseEnvironment.h"
#include "core/locale/Collator.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace {

const std::string& keyOf(const TableRow& row) {
  return row.cells.front();
}

/// The rows of a dictionary by their keys, since it has no order.
std::vector<TableRow> ordered(const TableFormat& format, std::vector<TableRow> rows) {
  if (!format.isDictionary) return rows;
  std::stable_sort(rows.begin(), rows.end(), [](const TableRow& a, const TableRow& b) { return keyOf(a) < keyOf(b); });
  return rows;
}

/// Finds rows by their contents, each one once. The time for all of them is n log n, as a file can have any number.
class EqualRows {
 public:
  explicit EqualRows(const std::vector<TableRow>& rows) : m_rows(rows), m_isTaken(rows.size()) {
    for (std::size_t i = rows.size(); i-- > 0;) m_places[&rows[i]].push_back(i);
  }

  /// The index of an equal row: the one after the row that was taken last or, failing that, the first one. Null if all
  /// have been taken.
  std::optional<std::size_t> take(const TableRow& row) {
    std::optional<std::size_t> found;
    if (m_next < m_rows.size() && !m_isTaken[m_next] && m_rows[m_next] == row) {
      found = m_next;
    } else if (const auto places = m_places.find(&row); places != m_places.end()) {
      auto& left = places->second;  // from last to first
      while (!left.empty() && m_isTaken[left.back()]) left.pop_back();
      if (!left.empty()) found = left.back();
    }
    if (!found) return std::nullopt;
    m_isTaken[*found] = true;
    m_next = *found + 1;
    return found;
  }
  bool isTaken(std::size_t index) const { return m_isTaken[index]; }

 private:
  struct IsLess {
    bool operator()(const TableRow* a, const TableRow* b) const {
      return std::tie(a->isOn, a->cells) < std::tie(b->isOn, b->cells);
    }
  };

  const std::vector<TableRow>& m_rows;
  std::vector<bool> m_isTaken;
  std::map<const TableRow*, std::vector<std::size_t>, IsLess> m_places;
  std::size_t m_next = 0;
};

}  // namespace

EditTable::EditTable(TableFormat format, const Scheduled::NumberText& numbers, Changed changed)
    : m_format(format), m_numbers(numbers), m_changed(std::move(changed)) {}

bool EditTable::isSortable() const {
  return std::any_of(m_format.columns.begin(), m_format.columns.end(),
                     [](const TableFormat::Column& column) { return column.title != nullptr; });
}

std::vector<EditTable::Offer> EditTable::offers() const {
  std::vector<Offer> result;
  for (const TableFormat::MenuItem& item : m_format.menu) {
    result.push_back({.item = item, .isEnabled = indexOf(std::string(item.title)) == m_rows.size()});
  }
  return result;
}

/// The number of rows if none has that name.
std::size_t EditTable::indexOf(const std::string& name) const {
  const auto found =
      std::find_if(m_rows.begin(), m_rows.end(), [&](const TableRow& row) { return keyOf(row) == name; });
  return static_cast<std::size_t>(std::distance(m_rows.begin(), found));
}

bool EditTable::fill(const std::vector<TableRow>& rows) {
  std::vector<TableRow> result = rows;
  for (TableRow& row : result) {
    row.cells.resize(m_format.columns.size());
    if (!row.recorded.empty()) row.recorded.resize(m_format.columns.size());
  }
  auto written = writtenRows(m_format, result, m_numbers);
  if (ordered(m_format, written) == ordered(m_format, writtenRows(m_format, m_rows, m_numbers))) return false;
  // Blank rows aren't in the record, so a refill after an undo elsewhere must not remove them. Unfinished rows may
  // include them already.
  const auto isPending = [this](const TableRow& row) { return row.recorded.empty() && isBlank(m_format, row); };
  if (std::none_of(result.begin(), result.end(), isPending)) {
    std::copy_if(m_rows.begin(), m_rows.end(), std::back_inserter(result), isPending);
  }
  takeIds(result);
  m_rows = std::move(result);
  m_reported = std::move(written);
  m_refused = refusedCells(m_format, m_rows, m_numbers);
  m_order.resize(m_rows.size());
  std::iota(m_order.begin(), m_order.end(), 0);
  updateOrder();
  return true;
}

/// Gives each new row the identifier of an equal old one or, if the text of a row has changed in place, of the old one
/// at its index.
void EditTable::takeIds(const std::vector<TableRow>& rows) {
  std::vector<std::optional<Id>> ids(rows.size());
  EqualRows equals(m_rows);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (const auto old = equals.take(rows[i])) ids[i] = m_ids[*old];
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (ids[i]) continue;
    ids[i] = i < m_rows.size() && !equals.isTaken(i) ? m_ids[i] : m_nextId++;
  }
  m_ids.clear();
  for (const auto& id : ids) m_ids.push_back(*id);
}

void EditTable::append(TableRow row) {
  m_order.push_back(m_rows.size());
  m_rows.push_back(std::move(row));
  m_ids.push_back(m_nextId++);
}

std::size_t EditTable::add(std::string text) {
  TableRow row{.isOn = m_format.hasBox, .cells = std::vector<std::string>(m_format.columns.size())};
  for (std::size_t i = 0; i < row.cells.size(); ++i) row.cells[i] = m_format.columns[i].initial;
  if (!text.empty()) row.cells.front() = std::move(text);
  append(std::move(row));
  changed(Editing::Step::Begins);
  return m_order.size() - 1;
}

bool EditTable::remove(std::size_t position) {
  if (!isRow(position)) return false;
  const std::size_t index = m_order[position];
  m_rows.erase(m_rows.begin() + static_cast<std::ptrdiff_t>(index));
  m_ids.erase(m_ids.begin() + static_cast<std::ptrdiff_t>(index));
  m_order.erase(m_order.begin() + static_cast<std::ptrdiff_t>(position));
  for (std::size_t& other : m_order) other -= other > index ? 1 : 0;  // the rows after it have moved up
  changed(Editing::Step::Begins);
  return true;
}

void EditTable::setCell(std::size_t position, std::size_t column, std::string text) {
  if (!isRow(position) || column >= m_format.columns.size()) return;
  const std::size_t index = m_order[position];
  m_rows[index].cells[column] = std::move(text);
  changed(Editing::Step::Continues, std::to_string(m_ids[index]) + "." + std::to_string(column));
}

void EditTable::setBox(std::size_t position, bool isOn) {
  if (!isRow(position)) return;
  m_rows[m_order[position]].isOn = isOn;
  changed(Editing::Step::Begins);
}

void EditTable::changed(Editing::Step step, const std::string& cell) {
  m_refused = refusedCells(m_format, m_rows, m_numbers);
  auto rows = writtenRows(m_format, m_rows, m_numbers);
  if (rows == m_reported) return;  // a blank row is no edit of the record
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
    const bool isLast = isBlank(m_format, m_rows[a]);
    const bool isOtherLast = isBlank(m_format, m_rows[b]);
    if (isLast || isOtherLast) return isOtherLast && !isLast;
    const auto& [column, isAscending, collator] = *m_sorting;
    const int order = collator.localizedStandardCompare(m_rows[a].cells[column], m_rows[b].cells[column]);
    return isAscending ? order < 0 : order > 0;
  });
}

std::string EditTable::copied(std::size_t position) const {
  if (!isRow(position)) return {};
  const TableRow& row = shownRow(position);
  if (!m_format.hasVariables) return keyOf(row);
  const std::string& value = row.cells.back();
  return keyOf(row) + '=' + (value.empty() ? value : String::shellWord(value));
}

Result<void> EditTable::paste(std::string_view text) {
  if (!m_format.hasVariables) return Error{Error::Code::BadArgument, "the table takes no text"};
  const auto variables = parseEnvironment(text);
  if (!variables) return variables.error();
  for (const auto& [name, value] : *variables) {
    const std::size_t index = indexOf(name);
    if (index == m_rows.size()) append({.cells = {name, ""}});
    m_rows[index].cells.back() = value;
  }
  changed(Editing::Step::Begins);
  return {};
}

bool EditTable::isSecret(std::size_t position, std::size_t column) const {
  return m_format.hasVariables && isRow(position) && column == 1 && !shownRow(position).cells[column].empty() &&
         looksSecret(keyOf(shownRow(position)));
}

std::optional<RowProblem> EditTable::problem(std::size_t position, std::size_t column) const {
  if (!isRow(position)) return std::nullopt;
  const auto found = std::find_if(m_refused.begin(), m_refused.end(), [&](const RefusedCell& cell) {
    return cell.row == m_order[position] && cell.column == column;
  });
  return found == m_refused.end() ? std::nullopt : std::optional(found->problem);
}

std::optional<EditTable::Cell> EditTable::refusedCell() const {
  if (m_refused.empty()) return std::nullopt;
  const auto row = std::find(m_order.begin(), m_order.end(), m_refused.front().row);
  return Cell{static_cast<std::size_t>(std::distance(m_order.begin(), row)), m_refused.front().column};
}

std::optional<InvalidField> EditTable::refuse(const std::string& key, const Localize& localize) const {
  if (m_refused.empty()) return std::nullopt;
  const auto& [row, column, problem] = m_refused.front();
  return InvalidField{.message = EditorTexts(localize).fieldCantBeSaved(key),
                      .reason = text(problem, m_format.columns[column], keyOf(m_rows[row]), localize)};
}

}  // namespace mirvel
