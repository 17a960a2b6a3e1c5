#include "core/editor/TableFormat.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include "core/editor/EditorTexts.h"
#include "core/schedule/NumberText.h"

namespace mirvel {

namespace {

const std::string& nameOf(const TableRow& row) {
  return row.cells.front();
}

bool hasNameOfRecord(const TableRow& row) {
  return !row.recorded.empty() && row.recorded.front() == nameOf(row);
}

/// Collects the cells that can't be saved.
class Check {
 public:
  Check(const TableFormat& format, const std::vector<TableRow>& rows, const Scheduled::NumberText& numbers)
      : m_format(format), m_numbers(numbers) {
    for (const TableRow& row : rows) {
      if (hasNameOfRecord(row) && !isBlank(format, row)) m_names.insert(nameOf(row));
    }
  }

  void add(std::size_t index, const TableRow& row) {
    if (isBlank(m_format, row)) return;
    for (std::size_t column = 0; column < std::min(row.cells.size(), m_format.columns.size()); ++column) {
      if (const auto problem = problemOf(row, column)) m_refused.push_back({index, column, *problem});
    }
  }
  std::vector<RefusedCell> refused() && { return std::move(m_refused); }

 private:
  std::optional<RowProblem> problemOf(const TableRow& row, std::size_t index) {
    const TableFormat::Column& column = m_format.columns[index];
    const std::string& cell = row.cells[index];
    if (index == 0 && hasNameOfRecord(row)) return std::nullopt;
    if (index == 0 && m_format.isDictionary) {
      if (cell.empty()) return RowProblem::NoName;
      if (!m_format.hasLists && !m_names.insert(cell).second) return RowProblem::RepeatedName;
    }
    if (cell.find_first_of(column.forbidden) != std::string::npos) return RowProblem::ForbiddenCharacter;
    if (column.isNumber && !m_numbers.parseWhole(cell)) return RowProblem::NotAWholeNumber;
    const bool isMissing = column.isRequired && cell.empty() && row.cells != row.recorded;
    return isMissing ? std::optional(RowProblem::NoValue) : std::nullopt;
  }

  const TableFormat& m_format;
  const Scheduled::NumberText& m_numbers;
  std::set<std::string, std::less<>> m_names;
  std::vector<RefusedCell> m_refused;
};

}  // namespace

std::string text(RowProblem problem, const TableFormat::Column& column, const std::string& name,
                 const Localize& localize) {
  const EditorTexts texts(localize);
  switch (problem) {
    case RowProblem::NoName:
      return texts.aRowHasNoName();
    case RowProblem::RepeatedName:
      return texts.moreThanOneRowIsCalled(name);
    case RowProblem::ForbiddenCharacter:
      return texts.theNameContains(name, std::string(column.forbidden));
    case RowProblem::NoValue:
      return texts.hasNoValue(name);
    case RowProblem::NotAWholeNumber:
      return texts.isNoWholeNumber(name);
  }
  return {};
}

bool isBlank(const TableFormat& format, const TableRow& row) {
  if (row.cells == row.recorded || !row.cells.back().empty()) return false;
  for (std::size_t i = 0; i + 1 < std::min(row.cells.size(), format.columns.size()); ++i) {
    const TableFormat::Column& column = format.columns[i];
    if (column.isEditable && !row.cells[i].empty() && row.cells[i] != column.initial) return false;
  }
  return true;
}

std::vector<TableRow> writtenRows(const TableFormat& format, const std::vector<TableRow>& rows,
                                  const Scheduled::NumberText& numbers) {
  std::vector<TableRow> result;
  std::remove_copy_if(rows.begin(), rows.end(), std::back_inserter(result),
                      [&](const TableRow& row) { return isBlank(format, row); });
  for (TableRow& row : result) {
    for (std::size_t i = 0; i < std::min(row.cells.size(), format.columns.size()); ++i) {
      const auto number = format.columns[i].isNumber ? numbers.parseWhole(row.cells[i]) : std::nullopt;
      if (number) row.cells[i] = std::to_string(*number);
    }
  }
  return result;
}

std::vector<RefusedCell> refusedCells(const TableFormat& format, const std::vector<TableRow>& rows,
                                      const Scheduled::NumberText& numbers) {
  Check check(format, rows, numbers);
  for (std::size_t i = 0; i < rows.size(); ++i) check.add(i, rows[i]);
  return std::move(check).refused();
}

namespace {

std::optional<std::int64_t> plainNumber(std::string_view digits) {
  std::int64_t number = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stopped, failure] = std::from_chars(digits.data(), end, number);
  return failure == std::errc() && stopped == end ? std::optional(number) : std::nullopt;
}

TableRow recordedRow(const std::vector<std::string>& cells, bool isOn = false) {
  return {.isOn = isOn, .cells = cells, .recorded = cells};
}

}  // namespace

std::vector<TableRow> rowsOf(const jobfile::StringMap<bool>& entries) {
  std::vector<TableRow> rows;
  for (const auto& [key, isOn] : entries) rows.push_back(recordedRow({key}, isOn));
  return rows;
}

std::vector<TableRow> rowsOf(const jobfile::StringMap<std::string>& entries) {
  std::vector<TableRow> rows;
  for (const auto& [key, value] : entries) rows.push_back(recordedRow({key, value}));
  return rows;
}

std::vector<TableRow> rowsOf(const std::vector<std::string>& texts) {
  std::vector<TableRow> rows;
  rows.reserve(texts.size());
  for (const std::string& text : texts) rows.push_back(recordedRow({text}));
  return rows;
}

std::vector<TableRow> rowsOf(const jobfile::StringMap<std::vector<std::string>>& lists) {
  std::vector<TableRow> rows;
  for (const auto& [key, values] : lists) {
    for (const std::string& value : values) rows.push_back(recordedRow({key, value}));
    if (values.empty()) rows.push_back(recordedRow({key, ""}));
  }
  return rows;
}

std::vector<TableRow> rowsOf(const jobfile::LimitLoadToSessionType& sessions) {
  return rowsOf(sessions.types);
}

std::vector<TableRow> rowsOf(const jobfile::ResourceLimits& limits) {
  std::vector<TableRow> rows;
  for (const auto& member : jobfile::ResourceLimits::members()) {
    const auto& limit = limits.*member.limit;
    if (limit) rows.push_back(recordedRow({std::string(member.key), std::to_string(*limit)}));
  }
  return rows;
}

void fromRows(const std::vector<TableRow>& rows, jobfile::StringMap<bool>& entries) {
  entries.clear();
  for (const TableRow& row : rows) entries.insert_or_assign(nameOf(row), row.isOn);
}

void fromRows(const std::vector<TableRow>& rows, jobfile::StringMap<std::string>& entries) {
  entries.clear();
  for (const TableRow& row : rows) entries.insert_or_assign(nameOf(row), row.cells.at(1));
}

void fromRows(const std::vector<TableRow>& rows, std::vector<std::string>& texts) {
  texts.clear();
  for (const TableRow& row : rows) texts.push_back(nameOf(row));
}

void fromRows(const std::vector<TableRow>& rows, jobfile::StringMap<std::vector<std::string>>& lists) {
  const auto before = std::exchange(lists, {});
  for (const TableRow& row : rows) {
    const auto list = before.find(nameOf(row));
    const bool isEmptyList =
        row.cells == row.recorded && row.cells.at(1).empty() && list != before.end() && list->second.empty();
    auto& values = lists[nameOf(row)];
    if (!isEmptyList) values.push_back(row.cells.at(1));
  }
}

void fromRows(const std::vector<TableRow>& rows, jobfile::LimitLoadToSessionType& sessions) {
  fromRows(rows, sessions.types);
}

void fromRows(const std::vector<TableRow>& rows, jobfile::ResourceLimits& limits) {
  limits = {};
  for (const auto& member : jobfile::ResourceLimits::members()) {
    const auto row =
        std::find_if(rows.begin(), rows.end(), [&](const auto& each) { return nameOf(each) == member.key; });
    if (row != rows.end()) limits.*member.limit = plainNumber(row->cells.at(1));
  }
}

}  // namespace mirvel
