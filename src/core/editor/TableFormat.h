#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/jobfile/Plist.h"
#include "core/session/Editing.h"

/// The rows of tables in the editor as plain values: their format, which of them can be saved, and their conversion
/// from and to values of the record.
namespace mirvel {

class Localize;

namespace Scheduled {
class NumberText;
}

/// The columns of a table in the editor, and how rows are added to it. The format for a key is part of its `Field`. The
/// spans and texts refer to constants.
struct TableFormat {
  using Text = std::string (*)(const Localize& localize);
  struct Column {
    Text title = nullptr;             ///< without titles, a table has no header and can't be sorted
    bool isEditable = true;           ///< if false, the text is fixed once the row has been added
    bool isPath = false;              ///< displayed from left to right in any language
    bool isNumber = false;            ///< whole numbers
    bool isRequired = false;          ///< can't be empty in a row that isn't blank
    std::string_view initial = {};    ///< the text in a row added by an empty text
    Text placeholder = nullptr;       ///< shown while the cell is empty
    std::string_view forbidden = {};  ///< characters that can't be entered
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
  bool isDictionary = false;        ///< the first cells are keys, which can't be empty
  bool hasLists = false;            ///< of a dictionary: several rows can have the same key
  bool hasVariables = false;        ///< environment variables: lines of NAME=value, some of them secret
  Adding adding = Adding::EmptyRow;
  std::span<const MenuItem> menu = {};  ///< for `Adding::Menu`
};

/// Why a cell can't be saved.
enum class RowProblem { NoName, RepeatedName, ForbiddenCharacter, NoValue, NotAWholeNumber };
std::string text(RowProblem problem, const TableFormat::Column& column, const std::string& name,
                 const Localize& localize);

/// A cell that can't be saved, by the index of its row.
struct RefusedCell {
  std::size_t row;
  std::size_t column;
  RowProblem problem;
};

/// Whether a row counts as absent, because nothing was entered in it or everything was deleted from it: the last cell
/// is empty, and the others are empty or have the text that a new row has. A row that is as the record has it isn't.
bool isBlank(const TableFormat& format, const TableRow& row);
/// The rows to be written: those that aren't blank, with numbers in plain digits.
std::vector<TableRow> writtenRows(const TableFormat& format, const std::vector<TableRow>& rows,
                                  const Scheduled::NumberText& numbers);
/// The cells that can't be saved, row by row. Names that are as in the record aren't among them: of two rows of the
/// same name, the one is refused in which it was entered.
std::vector<RefusedCell> refusedCells(const TableFormat& format, const std::vector<TableRow>& rows,
                                      const Scheduled::NumberText& numbers);

/// Rows of what a job file holds: dictionaries sorted by key, arrays in their order. A list without elements within a
/// dictionary is a row with an empty value.
std::vector<TableRow> rowsOf(const jobfile::StringMap<bool>& entries);
std::vector<TableRow> rowsOf(const jobfile::StringMap<std::string>& entries);
std::vector<TableRow> rowsOf(const std::vector<std::string>& texts);
std::vector<TableRow> rowsOf(const jobfile::StringMap<std::vector<std::string>>& lists);
std::vector<TableRow> rowsOf(const jobfile::LimitLoadToSessionType& sessions);
std::vector<TableRow> rowsOf(const jobfile::ResourceLimits& limits);
/// Convert rows back. All of them are written, so blank ones have to be removed first; see `writtenRows`. Of several
/// rows with the same key, the last one is kept. What rows don't show is kept: the form of a single session type, and
/// the lists without elements.
void fromRows(const std::vector<TableRow>& rows, jobfile::StringMap<bool>& entries);
void fromRows(const std::vector<TableRow>& rows, jobfile::StringMap<std::string>& entries);
void fromRows(const std::vector<TableRow>& rows, std::vector<std::string>& texts);
void fromRows(const std::vector<TableRow>& rows, jobfile::StringMap<std::vector<std::string>>& lists);
void fromRows(const std::vector<TableRow>& rows, jobfile::LimitLoadToSessionType& sessions);
void fromRows(const std::vector<TableRow>& rows, jobfile::ResourceLimits& limits);

}  // namespace mirvel
