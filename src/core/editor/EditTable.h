#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Result.h"
#include "core/editor/TableFormat.h"
#include "core/ports/Interface.h"
#include "core/session/Editing.h"

namespace mirvel {

class Collator;
class Localize;

/// The rows of a table in the editor. They keep the order of the record and are shown in the order of `order`, so that
/// sorting changes no file. Blank rows count as absent: they are never reported and never written; see `isBlank`.
/// Calls with a row or column out of range have no effect. Main thread only.
class EditTable {
 public:
  /// Identifies a row as long as the table has it, whatever its position and text.
  using Id = std::size_t;
  /// A menu item; enabled unless a row has it already.
  struct Offer {
    TableFormat::MenuItem item;
    bool isEnabled = true;
  };
  struct Cell {
    std::size_t position;
    std::size_t column;

    bool operator==(const Cell&) const = default;
  };
  /// Called after each change of the rows that aren't blank. `cell` identifies the cell that is typed into, as undo
  /// takes back consecutive changes of one cell together; it is empty for other changes.
  using Changed = std::function<void(Editing::Step step, const std::string& cell)>;

  /// `numbers` must outlive the table.
  EditTable(TableFormat format, const Scheduled::NumberText& numbers, Changed changed = {});

  const TableFormat& format() const { return m_format; }
  const std::vector<TableRow>& rows() const { return m_rows; }
  /// The indices of the rows from top to bottom.
  const std::vector<std::size_t>& order() const { return m_order; }
  const TableRow& shownRow(std::size_t position) const { return m_rows.at(m_order.at(position)); }
  Id id(std::size_t position) const { return m_ids.at(m_order.at(position)); }
  bool isSortable() const;
  std::vector<Offer> offers() const;

  /// Replaces the rows, which is no edit, and sorts them as the previous ones. Equal contents change nothing, whatever
  /// the order of the rows of a dictionary, and false is returned. Otherwise rows that still exist keep their
  /// identifiers, and blank ones that were added are kept at the end, as the user may be about to fill them.
  bool fill(const std::vector<TableRow>& rows);

  // Positions are those on the screen.
  /// Appends a row with its box, if there is one, ticked, and returns its position. An empty text is replaced by the
  /// column's initial one.
  std::size_t add(std::string text);
  bool remove(std::size_t position);
  void setCell(std::size_t position, std::size_t column, std::string text);
  void setBox(std::size_t position, bool isOn);
  /// Sorts the displayed rows by a column in the locale's order, blank ones last. Rows that are added later come last.
  /// The collator must outlive the table.
  void sort(std::size_t column, bool isAscending, const Collator& collator);

  /// The text of a row for the clipboard: "NAME=value" as `parseEnvironment` reads it, or its first cell.
  std::string copied(std::size_t position) const;
  /// Adds rows from lines of text, as one change. A variable replaces the value of the row with its name. Fails, and
  /// changes nothing, if a line can't be parsed, with the line; and with `BadArgument` if the table takes no text.
  Result<void> paste(std::string_view text);

  /// Whether the text of a cell is to be hidden because the name of its row looks secret.
  bool isSecret(std::size_t position, std::size_t column) const;
  /// The reason why a cell can't be saved; null if it can.
  std::optional<RowProblem> problem(std::size_t position, std::size_t column) const;
  /// The first cell that can't be saved; null if there is none.
  std::optional<Cell> refusedCell() const;
  /// The reason why the rows can't be saved, in which `key` names the table; null if they can.
  std::optional<InvalidField> refuse(const std::string& key, const Localize& localize) const;

 private:
  struct Sorting {
    std::size_t column;
    bool isAscending;
    const Collator& collator;
  };

  std::size_t indexOf(const std::string& name) const;
  void append(TableRow row);
  void takeIds(const std::vector<TableRow>& rows);
  void updateOrder();
  bool isRow(std::size_t position) const { return position < m_order.size(); }
  void changed(Editing::Step step, const std::string& cell = {});

  TableFormat m_format;
  const Scheduled::NumberText& m_numbers;
  Changed m_changed;
  std::vector<TableRow> m_rows;
  std::vector<Id> m_ids;  ///< of the rows
  Id m_nextId = 0;
  std::vector<std::size_t> m_order;
  std::optional<Sorting> m_sorting;  ///< as the user has chosen it by a header
  std::vector<TableRow> m_reported;  ///< the rows that aren't blank, as of the last call of `m_changed`
  std::vector<RefusedCell> m_refused;
};

}  // namespace mirvel
