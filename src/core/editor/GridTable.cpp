#include "core/editor/GridTable.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "core/jobfile/LimitLoadToSessionType.h"
#include "core/locale/Localize.h"

namespace mirvel::GridTable {

bool hasBox(Kind kind) {
  return kind == Kind::boolString || kind == Kind::boolPath;
}

bool isTextEditable(Kind kind) {
  return kind != Kind::limitLoadToSessionType;
}

bool holdsPaths(Kind kind) {
  return adding(kind) == Adding::FilePanel || adding(kind) == Adding::FolderPanel;
}

Adding adding(Kind kind) {
  switch (kind) {
    case Kind::boolPath:
    case Kind::path:
      return Adding::FilePanel;
    case Kind::directory:
      return Adding::FolderPanel;
    case Kind::limitLoadToSessionType:
      return Adding::SessionTypeMenu;
    case Kind::boolString:
    case Kind::string:
      return Adding::EmptyRow;
  }
  return Adding::EmptyRow;
}

namespace {

std::vector<Item> withText(const std::vector<Item>& rows) {
  std::vector<Item> result;
  std::copy_if(rows.begin(), rows.end(), std::back_inserter(result),
               [](const Item& row) { return !row.string.empty(); });
  return result;
}

}  // namespace

Table::Table(Kind kind, const Source& source, std::string key, GridTableDelegate& delegate)
    : m_kind(kind), m_key(std::move(key)), m_delegate(delegate) {
  std::visit([this](const auto& content) { load(content); }, source);
  m_told = withText(m_rows);
}

void Table::load(const jobfile::StringMap<bool>& source) {
  for (const auto& [text, isOn] : source) m_rows.push_back({.bool_ = isOn, .string = text});
}

void Table::load(const std::vector<std::string>& source) {
  for (const std::string& text : source) m_rows.push_back({.string = text});
}

std::array<SessionTypeItem, 4> Table::sessionTypeItems() const {
  using Agent = jobfile::LimitLoadToSessionType::Agent;
  const auto item = [this](Agent agent, std::string_view toolTip) {
    const auto title = jobfile::LimitLoadToSessionType::text(agent);
    const bool isThere =
        std::any_of(m_rows.begin(), m_rows.end(), [&](const Item& row) { return row.string == title; });
    return SessionTypeItem{.title = title, .toolTip = toolTip, .isEnabled = !isThere};
  };
  return {item(Agent::aqua, "Has access to all GUI services, much like a login item."),
          item(Agent::background, "Runs in a context that’s the parent of all contexts for a given user."),
          item(Agent::loginWindow, "Runs in the loginwindow context."),
          item(Agent::standardIO, "Runs only in non-GUI login sessions (most notably, SSH login sessions).")};
}

std::size_t Table::add(std::string text) {
  m_rows.push_back({.bool_ = true, .string = std::move(text)});
  tell();
  return m_rows.size() - 1;
}

bool Table::remove(std::size_t row) {
  if (row >= m_rows.size()) return false;
  m_rows.erase(m_rows.begin() + static_cast<std::ptrdiff_t>(row));
  tell();
  return true;
}

void Table::setText(std::size_t row, std::string text) {
  if (row >= m_rows.size() || m_rows[row].string == text) return;
  m_rows[row].string = std::move(text);
  tell();
}

void Table::setBox(std::size_t row, bool isOn) {
  if (row >= m_rows.size() || m_rows[row].bool_ == isOn) return;
  m_rows[row].bool_ = isOn;
  tell();
}

void Table::tell() {
  auto rows = withText(m_rows);
  if (rows == m_told) return;
  m_told = std::move(rows);
  m_delegate.gridTableChanged(m_key, m_rows);
}

std::optional<std::size_t> Table::refusedRow() const {
  return hasBox(m_kind) ? repeatedRow(m_rows) : std::nullopt;
}

std::optional<InvalidField> Table::refuse(const Localize& localize) const {
  const auto row = refusedRow();
  if (!row) return std::nullopt;
  return InvalidField{.message = localize.tableCantBeSaved(m_key),
                      .reason = localize.moreThanOneRowIsCalled(m_rows[*row].string)};
}

std::optional<std::size_t> repeatedRow(const std::vector<Item>& rows) {
  std::set<std::string_view> texts;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (!rows[row].string.empty() && !texts.insert(rows[row].string).second) return row;
  }
  return std::nullopt;
}

std::optional<jobfile::StringMap<bool>> dictionaryOf(const std::vector<Item>& rows) {
  jobfile::StringMap<bool> result;
  for (const Item& row : rows) {
    if (!row.string.empty()) result.insert_or_assign(row.string, row.bool_);
  }
  return result.empty() ? std::nullopt : std::optional(std::move(result));
}

std::optional<std::vector<std::string>> arrayOf(const std::vector<Item>& rows) {
  std::vector<std::string> result;
  for (const Item& row : rows) {
    if (!row.string.empty()) result.push_back(row.string);
  }
  return result.empty() ? std::nullopt : std::optional(std::move(result));
}

}  // namespace mirvel::GridTable
