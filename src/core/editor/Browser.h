#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/editor/BrowserLeaf.h"
#include "core/editor/BrowserSchema.h"
#include "core/ports/Interface.h"
#include "core/propertylist/Value.h"
#include "core/session/BrowserItem.h"
#include "core/session/Editing.h"

namespace mirvel {

/// The value of a selected item, for the view beside the columns.
struct BrowserPreview {
  enum class Control {
    Box,          ///< `isOn`, or undecided
    Text,         ///< also for numbers
    Strings,      ///< a list of texts
    Description,  ///< a read-only text
  };

  std::uint64_t item = 0;  ///< its id, for `Browser::enterText` and the like
  std::string name;
  Control control{};
  std::string text;                                ///< for a box "On" or "Off"
  std::optional<bool> isOn = {};                   ///< null if nothing has been chosen yet
  std::vector<std::string> strings = {};           ///< the elements of an array
  std::span<const std::string_view> choices = {};  ///< known values to choose from; others can be typed
  std::string_view help = {};
  std::optional<std::string> problem = {};  ///< why the value can't be saved
};

/// A nested dictionary of the job file as columns: the entries of the dictionary, then those of the entry that is
/// selected in the first column, and so on. The tree is made from the whole value of the key and represents all of it,
/// so that an edit changes nothing else.
///
/// Input that a file can't contain, such as two entries of the same name, stays in the tree; the record then keeps its
/// value until the tree is valid. An added entry whose name is chosen by the job isn't part of the tree before it has a
/// name or content.
///
/// A value that isn't a dictionary has no entries. It blocks the browser: nothing can be added until it is removed.
///
/// Calls with a column, a row or an id that doesn't exist, or for something that isn't possible, have no effect. Main
/// thread only.
class Browser {
 public:
  /// Called after each change of the tree. `place` identifies the value that is typed into, as undo takes back
  /// consecutive changes of one value together; it is empty for other changes.
  using Changed = std::function<void(Editing::Step step, const std::string& place)>;
  /// The row in each column.
  using Path = std::vector<std::size_t>;
  /// An item of the menu from which entries are added.
  struct Offer {
    std::string title;  ///< a key, or the localized name of a type
    std::string_view help;
    bool isEnabled = true;  ///< false if the column has such an entry already, and for each in a blocked browser
  };
  /// A type that an item has or can have.
  struct TypeChoice {
    BrowserItem::Type type;
    std::string title;
    bool isCurrent = false;
    bool isEnabled = true;  ///< false if the value would be lost
  };

  /// `localize` and `numbers` must outlive the browser.
  Browser(const BrowserSchema& schema, const Localize& localize, const Scheduled::NumberText& numbers,
          Changed changed = {});

  const BrowserSchema& schema() const { return m_schema; }

  /// Shows the record's value, or the unfinished tree. This is no edit. If it is what the browser shows already, the
  /// order of the items is kept; otherwise the selection is kept as far as items of the same names exist, as are new
  /// items without a name.
  void fill(const jobfile::Plist& plist, const Unfinished& unfinished);
  /// Writes the tree to the record, or to `unfinished` if it can't be saved.
  void write(jobfile::Plist& plist, Unfinished& unfinished) const;
  /// The value for the record: null if there are no items. Only meaningful while nothing is refused.
  std::optional<propertylist::Dictionary> value() const;
  /// Why the tree can't be saved; null if it can.
  std::optional<InvalidField> refuse() const;
  /// The first item that can't be saved. Null also if only the tree as a whole can't.
  std::optional<Path> refusedPath() const;

  /// Shown in place of the entries while there are none.
  std::string emptyText() const;

  // Columns are counted from 0. The last one is that of the entries of the last selected item, if it has entries.

  std::size_t columnCount() const;
  const std::vector<BrowserItem>& items(std::size_t column) const;
  /// The name of an item; for the element of an array, its number.
  std::string title(std::size_t column, std::size_t row) const;
  std::optional<std::size_t> selected(std::size_t column) const;
  /// Selects a row, or none, and with it nothing in the columns after it.
  void select(std::size_t column, std::optional<std::size_t> row);
  Path path() const;
  void select(const Path& path);
  /// Why an item can't be saved, not counting those below it; null if it can or if it is new.
  std::optional<std::string> problem(std::size_t column, std::size_t row) const;
  /// The value of the last selected item; null if it has a column or nothing is selected.
  std::optional<BrowserPreview> preview() const;

  bool isNameEditable(std::size_t column, std::size_t row) const;
  std::vector<Offer> offers(std::size_t column) const;
  /// Adds an item at the end of the column, selects it, and returns its row. Its name can be edited if it is new.
  std::optional<std::size_t> add(std::size_t column, std::size_t offer);
  /// Removes an item with everything below it, and selects the next one if it was selected.
  void remove(std::size_t column, std::size_t row);
  /// Ends the naming of an item without a name: removes it if it is still new.
  void cancelNaming(std::size_t column, std::size_t row);
  void rename(std::size_t column, std::size_t row, const std::string& name);
  std::vector<TypeChoice> types(std::size_t column, std::size_t row) const;
  void setType(std::size_t column, std::size_t row, BrowserItem::Type type);

  bool canDuplicate(std::size_t column, std::size_t row) const;
  /// Inserts a copy with a new name after the item and selects it.
  void duplicate(std::size_t column, std::size_t row);
  /// An XML property list with the item and everything below it: a dictionary with its name, or an array for the
  /// element of an array. Null for values that XML can't represent, and while an item can't be saved.
  std::optional<std::string> copy(std::size_t column, std::size_t row) const;
  /// Adds the entries of a property list in any form to the column and selects the first one. Other text is added line
  /// by line to the array of strings that is selected there. Returns the reason if neither is possible.
  std::optional<InvalidField> paste(std::size_t column, const std::string& text);

  // Values belong to the item that was shown, even if another one has been selected since.

  /// Whether a text that was entered already represents the value: "0600" and "600" are the same mode.
  bool matchesValue(std::uint64_t item, const std::string& text) const;
  void enterText(std::uint64_t item, const std::string& text);
  void setOn(std::uint64_t item, bool isOn);
  void setStrings(std::uint64_t item, std::vector<std::string> strings, Editing::Step step = Editing::Step::Begins);

 private:
  using Items = std::vector<BrowserItem>;
  using LeafChange = std::function<void(BrowserItem& leaf, const BrowserLevel& level)>;
  /// The entries of a column.
  struct Column {
    const Items* items = nullptr;
    const BrowserLevel* level = nullptr;
  };

  void show(Items items);
  Column at(std::size_t column) const;
  const BrowserItem* itemAt(std::size_t column, std::size_t row) const;
  std::vector<BrowserItem*> selectedBefore(std::size_t column);
  Items& changeable(std::size_t column);
  void insert(std::size_t column, std::size_t row, Items added);
  std::optional<InvalidField> pasteItems(std::size_t column, const propertylist::Value& list);
  std::optional<InvalidField> pasteLines(std::size_t column, const std::string& text);
  InvalidField cantBePasted(std::string reason) const;
  void changeLeaf(std::uint64_t id, Editing::Step step, const LeafChange& change);
  void changedBelow(std::size_t column);
  void changed(Editing::Step step, const std::string& place) const;

  const BrowserSchema& m_schema;
  const Localize& m_localize;
  const Scheduled::NumberText& m_numbers;
  Changed m_changed;
  Items m_items;
  std::vector<std::uint64_t> m_path;  ///< the ids of the selected items, one for each column
  std::uint64_t m_lastId = 0;
  bool m_isBlocked = false;  ///< by a value that isn't a dictionary
};

}  // namespace mirvel
