#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/locale/Localize.h"
#include "core/session/BrowserItem.h"

namespace mirvel {

/// The texts of the browser of nested dictionaries.
class BrowserTexts : public Texts {
 public:
  using Texts::Texts;

  /// For a button above a column, counted from 1.
  std::string addInColumn(std::int64_t column) const { return format("add in column %@", {int_(column)}); }
  std::string chooseAValue() const { return text("Choose a value, or delete the row."); }
  std::string columnControls() const { return text("column controls"); }
  std::string copy() const { return text("Copy"); }
  /// Likewise.
  std::string deleteInColumn(std::int64_t column) const { return format("delete in column %@", {int_(column)}); }
  std::string duplicate() const { return text("Duplicate"); }
  std::string editValue() const { return text("Edit Value"); }
  std::string enterAName() const { return text("Enter a name, or delete the row."); }
  std::string enterANumber() const { return text("Enter a number."); }
  std::string enterAnOctalNumber() const { return text("Enter an octal number, such as 600."); }
  std::string enterAText() const { return text("Enter a text, or delete the row."); }
  std::string itCantBePastedHere() const { return text("The text on the clipboard can’t be pasted here"); }
  /// Shown in place of the entries of a key that has none.
  std::string noEntries(std::string_view key) const {
    if (key == "MachServices") return text("No Mach services");
    return key == "Sockets" ? text("No sockets") : text("No launch events");
  }
  std::string onlyPropertyListsCanBePasted() const {
    return text("Only property lists that contain a dictionary can be pasted.");
  }
  std::string onlyDictionariesCanBePasted() const { return text("Only dictionaries can be pasted here."); }
  std::string paste() const { return text("Paste"); }
  std::string rename() const { return text("Rename"); }
  std::string socket() const { return text("Socket"); }
  std::string theListIsTooDeep() const { return text("The property list is nested too deeply."); }
  std::string theValueIsNoDictionary(std::string_view key) const {
    return format("The value of “%@” isn’t a dictionary. Delete it before you add entries.", {std::string(key)});
  }
  std::string typeMenu() const { return text("Type"); }

  /// The name of a type in menus.
  std::string type(BrowserItem::Type type) const {
    switch (type) {
      case BrowserItem::Type::Dictionary:
        return text("Dictionary");
      case BrowserItem::Type::Array:
        return text("Array");
      case BrowserItem::Type::Boolean:
        return text("Boolean");
      case BrowserItem::Type::String:
        return text("String");
      case BrowserItem::Type::Integer:
        return text("Integer");
      case BrowserItem::Type::Real:
        return text("Double");
      case BrowserItem::Type::Strings:
        return text("Array (String)");
      case BrowserItem::Type::Kept:
        return text("Other");
    }
    return {};
  }
};

}  // namespace mirvel
