#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/jobfile/StringMap.h"
#include "core/ports/InvalidField.h"

namespace mirvel {

class GridTableDelegate;
class Localize;

/// The rules of a small table with add and delete buttons.
namespace GridTable {

/// What is in a row; a table without check boxes leaves `bool_` alone.
struct Item {
  bool bool_ = false;
  std::string string;

  bool operator==(const Item&) const = default;
};

/// What the rows of a table are.
enum class Kind : int {
  boolString = 0,  ///< names, each with a check box
  boolPath = 1,    ///< files, each with a check box
  string = 2,      ///< names
  path = 3,        ///< files
  directory = 4,   ///< folders
  limitLoadToSessionType = 5,
};

/// Where the text of a new row comes from.
enum class Adding { EmptyRow, FilePanel, FolderPanel, SessionTypeMenu };

bool hasBox(Kind kind);
bool isTextEditable(Kind kind);
/// Whether the texts are paths, which are read from left to right in any language.
bool holdsPaths(Kind kind);
Adding adding(Kind kind);

/// An item of the menu of session types.
struct SessionTypeItem {
  std::string_view title;
  std::string_view toolTip;
  bool isEnabled = true;  ///< false: there is a row of it already
};

/// What a table is filled from: a dictionary gives rows sorted by their texts, an array rows in its order.
using Source = std::variant<jobfile::StringMap<bool>, std::vector<std::string>, std::vector<Item>>;

/// The rows, which tell the delegate of each change of their contents. Rows without a text are none, so that one which
/// is still to be given its text isn't told. A change of a row that isn't there does nothing.
class Table {
 public:
  /// `key` names the table to the delegate, which outlives it.
  Table(Kind kind, const Source& source, std::string key, GridTableDelegate& delegate);

  Kind kind() const { return m_kind; }
  const std::string& key() const { return m_key; }
  const std::vector<Item>& rows() const { return m_rows; }
  std::array<SessionTypeItem, 4> sessionTypeItems() const;
  /// The first row that can't be saved beside those before it.
  std::optional<std::size_t> refusedRow() const;
  /// Why it can't be. None: all can.
  std::optional<InvalidField> refuse(const Localize& localize) const;

  /// Adds a row at the end, its box ticked, and gives its index. One without a text is then to be given it by the user.
  std::size_t add(std::string text);
  /// Whether there was such a row.
  bool remove(std::size_t row);
  void setText(std::size_t row, std::string text);
  void setBox(std::size_t row, bool isOn);

 private:
  void load(const jobfile::StringMap<bool>& source);
  void load(const std::vector<std::string>& source);
  void load(const std::vector<Item>& source) { m_rows = source; }
  void tell();

  Kind m_kind;
  std::string m_key;
  GridTableDelegate& m_delegate;
  std::vector<Item> m_rows;
  std::vector<Item> m_told;  ///< the rows with a text, as the delegate knows them
};

/// The first row with the text of one before it: a dictionary would lose one of the two. Rows without a text are none.
std::optional<std::size_t> repeatedRow(const std::vector<Item>& rows);
/// The rows as a dictionary, without those that have no text; of like texts the last wins. None if nothing is left.
std::optional<jobfile::StringMap<bool>> dictionaryOf(const std::vector<Item>& rows);
/// The texts of the rows in their order, without empty ones. None if nothing is left.
std::optional<std::vector<std::string>> arrayOf(const std::vector<Item>& rows);

}  // namespace GridTable

/// Hears of each change of such a table.
class GridTableDelegate {
 public:
  GridTableDelegate() = default;
  virtual ~GridTableDelegate() = default;
  GridTableDelegate(const GridTableDelegate&) = delete;
  GridTableDelegate& operator=(const GridTableDelegate&) = delete;

  /// `key` names the table.
  virtual void gridTableChanged(const std::string& key, const std::vector<GridTable::Item>& rows) = 0;
};

}  // namespace mirvel
