#pragma once

#include <optional>
#include <string>

#include "core/editor/BrowserSchema.h"
#include "core/session/BrowserItem.h"

namespace mirvel {

namespace Scheduled {
class NumberText;
}
class Localize;

/// The values of the browser's items: as text, from text, and as values of another type.
namespace BrowserLeaf {

/// How the value is shown and entered.
enum class Form { Plain, Octal };
Form formOf(const BrowserItem& item, const BrowserLevel& level);

/// The value as text, or the text that was entered in its place. Integers and reals have the digits that a property
/// list has, without grouping. Empty for containers, booleans and arrays.
std::string text(const BrowserItem& item, Form form);

/// Sets the value of a string, an integer or a real. A text that isn't such a value is kept as entered, as is an empty
/// text unless the file has one there. Does nothing for other types.
void enter(BrowserItem& item, const std::string& text, Form form, const Scheduled::NumberText& numbers);

/// Why the item has no value; null if it has one.
std::optional<std::string> problem(const BrowserItem& item, Form form, const Localize& localize);

/// The same value as another type: 12 as "12" or 12.0, "x" as an array of one string, a dictionary as an array of one
/// dictionary. Null if something would be lost: "012" isn't the text of a number. With `isTrueIfEmpty`, an empty
/// dictionary can be converted to true and back. Entered text that isn't a value is entered again for the new type.
std::optional<BrowserItem> converted(const BrowserItem& item, BrowserItem::Type type, const BrowserLevel& level,
                                     const Scheduled::NumberText& numbers);

}  // namespace BrowserLeaf

}  // namespace mirvel
