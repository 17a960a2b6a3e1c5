#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/jobfile/StringMap.h"
#include "core/ports/Interface.h"
#include "core/session/Editing.h"

namespace mirvel {

class Collator;
class Localize;

/// What a table of the editor looks like and how its rows are entered. The format of a key is part of its `Field`.
struct TableFormat {
  struct Column {
    std::string_view title = {};  ///< in the header; a table without titles has none and can't be sorted
    bool isEditable = true;
    bool isPath = false;  ///< reads from left to right in any language
  };
  /// An entry of the menu from which rows are added.
  struct MenuItem {
    std::string_view title;
    std::string_view help;
  };
  /// Where the first cell of a new row comes from.
  enum class Adding { EmptyRow, FilePanel, FolderPanel, Menu };

  std::span<const Column> columns;  ///< one to three
  bool hasBox = false;              ///< in the first column
  bool isDictionary = false;        ///< the first cells are its keys: each once, none empty
  Adding adding = Adding::EmptyRow;
  std::span<const MenuItem> menu = {};
};

/// The rows of a table in the editor. They keep the order of the record and are shown in the order of `order`, so that
/// sorting changes no file. Rows whose cells are all empty count as absent: they are never reported and never written.
/// A row or column out of range changes nothing. For the main thread.
class EditTable {
 public:
  /// A menu item, and whether no row has it yet.
  struct Offer {
    TableFormat::MenuItem item;
    bool isEnabled = true;
  };
  /// Called after each change of a row that isn't empty. `cell` identifies what is typed into: changes of one cell
  /// continue each other.
  using Changed = std::function<void(Editing::Step step, const std::string& cell)>;

  explicit EditTable(TableFormat format, Changed changed = {});

  const TableFormat& format() const { return m_format; }
  const std::vector<TableRow>& rows() const { return m_rows; }
  /// The indices of the rows from top to bottom.
  const std::vector<std::size_t>& order() const { return m_order; }
  const TableRow& shownRow(std::size_t position) const { return m_rows.at(m_order.at(position)); }
  bool isSortable() const;
  std::vector<Offer> offers() const;

  /// Replaces the rows, which is no edit. Equal contents change nothing; otherwise empty rows are kept at the end, as
  /// the user may be about to fill them.
  void fill(const std::vector<TableRow>& rows);

  // Positions are those on the screen.
  /// Appends a row with its box ticked, and returns its position.
  std::size_t add(std::string text);
  bool remove(std::size_t position);
  void setCell(std::size_t position, std::size_t column, std::string text);
  void setBox(std::size_t position, bool isOn);
  /// Shows the rows by the texts of a column, as people sort names. Rows added later are shown at the end.
  void sort(std::size_t column, bool isAscending, const Collator& collator);

  /// The position of the first row that a dictionary can't hold beside those before it.
  std::optional<std::size_t> refusedPosition() const;
  /// Why the rows can't be saved; `key` names the table. None: they can be.
  std::optional<InvalidField> refuse(const std::string& key, const Localize& localize) const;

 private:
  bool isRow(std::size_t position) const { return position < m_order.size(); }
  void changed(Editing::Step step, const std::string& cell = {});

  TableFormat m_format;
  Changed m_changed;
  std::vector<TableRow> m_rows;
  std::vector<std::size_t> m_order;
  std::vector<TableRow> m_reported;  ///< the rows that aren't empty, as of the last call of `m_changed`
};

/// The rows without those that are empty.
std::vector<TableRow> filledRows(const std::vector<TableRow>& rows);
/// The first row that has no key, or the key of a row before it: a dictionary would lose one of them.
std::optional<std::size_t> unfitForDictionary(const std::vector<TableRow>& rows);

/// Rows of what a job file holds: dictionaries sorted by key, arrays in their order.
std::vector<TableRow> rowsOf(const jobfile::StringMap<bool>& entries);
std::vector<TableRow> rowsOf(const jobfile::StringMap<std::string>& entries);
std::vector<TableRow> rowsOf(const std::vector<std::string>& texts);
/// And back. None if no row is left; of rows with one key the last wins.
void fromRows(const std::vector<TableRow>& rows, std::optional<jobfile::StringMap<bool>>& entries);
void fromRows(const std::vector<TableRow>& rows, std::optional<jobfile::StringMap<std::string>>& entries);
void fromRows(const std::vector<TableRow>& rows, std::optional<std::vector<std::string>>& texts);

}  // namespace mirvel
