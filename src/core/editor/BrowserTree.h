#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/editor/BrowserSchema.h"
#include "core/propertylist/Value.h"
#include "core/session/BrowserItem.h"

/// Conversion between property lists and trees of items. A tree that was made from a list gives exactly that list.
namespace mirvel {

/// The entries of a dictionary. The items have no ids.
std::vector<BrowserItem> itemsOf(const propertylist::Dictionary& entries, const BrowserLevel& level);
/// The item of an entry of that level.
BrowserItem itemOf(std::string name, const propertylist::Value& value, const BrowserLevel& level);

/// The value of an item. Items without a value are left out, as are new ones; of entries with the same name, the last
/// one is kept.
propertylist::Value valueOf(const BrowserItem& item);
propertylist::Dictionary valueOf(const std::vector<BrowserItem>& entries);

/// The items without new ones, which aren't part of the list yet, at any depth.
std::vector<BrowserItem> withoutNew(const std::vector<BrowserItem>& items);

/// Gives an id above `lastId`, which is updated, to the items that have none.
void assignIds(std::vector<BrowserItem>& items, std::uint64_t& lastId);
/// Makes a tree succeed another after a refill: items with the same path by name take over the ids, as do items of
/// another name at the same position of lists of the same length, and new items are kept. The others get ids as above.
void succeed(std::vector<BrowserItem>& items, const std::vector<BrowserItem>& previous, std::uint64_t& lastId);

}  // namespace mirvel
