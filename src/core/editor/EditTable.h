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

/// The columns of a table in the editor, and how rows are added to it. The format for a key is part of its `Field`. The
/// spans and texts refer to constants.
struct TableFormat {
  struct Column {
    std::string_view title = {};  ///< without titles, a table has no header and can't be sorted
    bool isEditable = true;       ///< if false, the text is fixed once the row has been added
    bool isPath = false;          ///< displayed from left to right in any language
  };
  /// An item of the menu from which rows are added. The title becomes the first cell; a row that exists already isn't
  /// offered again.
  struct MenuItem {
    std::string_view title;
    std::string_view help;
  };
  /// The source of the first cell of a new row.
  enum class Adding {
    EmptyRow,     ///< typed by the user
    FilePanel,    ///< a path from an open panel
    FolderPanel,  ///< the same for folders
    Menu,         ///< an item of `menu`
  };

  std::span<const Column> columns;  ///< one to three
  bool hasBox = false;              ///< a check box in the first column
  bool isDictionary = false;        ///< the first cells are keys, which must be unique and not empty
  Adding adding = Adding::EmptyRow;
  std::span<const MenuItem> menu = {};  ///< for `Adding::Menu`
};

/// The rows of a table in the editor. They keep the order of the record and are shown in the order of `order`, so that
/// sorting changes no file. Rows whose cells are all empty count as absent: they are never reported and never written.
/// Calls with a row or column out of range have no effect. Main thread only.
class EditTable {
 public:
  /// A menu item; enabled unless a row has it already.
  struct Offer {
    TableFormat::MenuItem item;
    bool isEnabled = true;
  };
  /// Called after each change of the rows that aren't empty. `cell` identifies the cell that is typed into, as undo
  /// takes back consecutive changes of one cell together; it is empty for other changes.
  using Changed = std::function<void(Editing::Step step, const std::string& cell)>;

  explicit EditTable(TableFormat format, Changed changed = {});

  const TableFormat& format() const { return m_format; }
  const std::vector<TableRow>& rows() const { return m_rows; }
  /// The indices of the rows from top to bottom.
  const std::vector<std::size_t>& order() const { return m_order; }
  const TableRow& shownRow(std::size_t position) const { return m_rows.at(m_order.at(position)); }
  bool isSortable() const;
  std::vector<Offer> offers() const;

  /// Replaces the rows, which is no edit, and sorts them as the previous ones. Equal contents change nothing; otherwise
  /// empty rows are kept at the end, as the user may be about to fill them.
  void fill(const std::vector<TableRow>& rows);

  // Positions are those on the screen.
  /// Appends a row with its box ticked, and returns its position.
  std::size_t add(std::string text);
  bool remove(std::size_t position);
  void setCell(std::size_t position, std::size_t column, std::string text);
  void setBox(std::size_t position, bool isOn);
  /// Sorts the displayed rows by a column in the locale's order, empty ones last. Rows that are added later come last.
  /// The collator must outlive the table.
  void sort(std::size_t column, bool isAscending, const Collator& collator);

  /// The position of the first row that a dictionary can't contain together with those before it; null if there is
  /// none.
  std::optional<std::size_t> refusedPosition() const;
  /// The reason why the rows can't be saved, in which `key` names the table; null if they can.
  std::optional<InvalidField> refuse(const std::string& key, const Localize& localize) const;

 private:
  struct Sorting {
    std::size_t column;
    bool isAscending;
    const Collator& collator;
  };

  void updateOrder();
  bool isRow(std::size_t position) const { return position < m_order.size(); }
  void changed(Editing::Step step, const std::string& cell = {});

  TableFormat m_format;
  Changed m_changed;
  std::vector<TableRow> m_rows;
  std::vector<std::size_t> m_order;
  std::optional<Sorting> m_sorting;  ///< as the user has chosen it by a header
  std::vector<TableRow> m_reported;  ///< the rows that aren't empty, as of the last call of `m_changed`
};

/// The rows without those that are empty.
std::vector<TableRow> filledRows(const std::vector<TableRow>& rows);
/// The index of the first row without a key, or with the key of an earlier row, which a dictionary would lose; null if
/// there is none.
std::optional<std::size_t> unfitForDictionary(const std::vector<TableRow>& rows);

/// Rows of what a job file holds: dictionaries sorted by key, arrays in their order.
std::vector<TableRow> rowsOf(const jobfile::StringMap<bool>& entries);
std::vector<TableRow> rowsOf(const jobfile::StringMap<std::string>& entries);
std::vector<TableRow> rowsOf(const std::vector<std::string>& texts);
/// Convert rows back, without those that are empty. The result is null if there are no rows. Of several rows with the
/// same key, the last one is kept; see `unfitForDictionary`.
void fromRows(const std::vector<TableRow>& rows, std::optional<jobfile::StringMap<bool>>& entries);
void fromRows(const std::vector<TableRow>& rows, std::optional<jobfile::StringMap<std::string>>& entries);
void fromRows(const std::vector<TableRow>& rows, std::optional<std::vector<std::string>>& texts);

}  // namespace mirvel
