#include "core/editor/BrowserTree.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <string_view>
#include <utility>

namespace mirvel {

namespace {

using propertylist::Array;
using propertylist::Dictionary;
using propertylist::Value;
using Items = std::vector<BrowserItem>;
using Strings = std::vector<std::string>;

bool isDictionary(const Value& value) {
  return value.as<Dictionary>() != nullptr;
}

/// The strings of an array that contains nothing else.
std::optional<Strings> stringsOf(const Array& array) {
  Strings strings;
  for (const Value& element : array) {
    const auto* const text = element.as<std::string>();
    if (!text) return std::nullopt;
    strings.push_back(*text);
  }
  return strings;
}

void setArray(BrowserItem& item, const Value& value, const BrowserLevel& level) {
  const Array& array = *value.as<Array>();
  const bool hasDictionary = array.empty() || std::any_of(array.begin(), array.end(), isDictionary);
  if (level.elements && hasDictionary) {
    item.content = BrowserItem::Elements();
    for (const Value& element : array) item.children.push_back(itemOf({}, element, *level.elements));
  } else if (auto strings = stringsOf(array)) {
    item.mayBeEmpty = strings->empty();
    item.content = *std::move(strings);
  } else {
    item.content = value;
  }
}

/// Finds the item of an earlier tree that an item succeeds.
class Predecessors {
 public:
  Predecessors(const Items& items, const Items& previous) {
    for (const BrowserItem& item : items) m_names.insert(item.name);
    for (const BrowserItem& item : previous) {
      if (item.isNew) continue;
      m_byName.emplace(item.name, &item);
      m_inOrder.push_back(&item);
    }
    m_isSameCount = items.size() == m_inOrder.size();
  }

  /// Null if there is none.
  const BrowserItem* of(const BrowserItem& item, std::size_t row) const {
    const BrowserItem* const atRow = row < m_inOrder.size() ? m_inOrder[row] : nullptr;
    if (item.name.empty() && !item.mayBeUnnamed) return atRow;  // an element of an array
    const auto named = m_byName.find(item.name);
    if (named != m_byName.end()) return named->second;
    // Undo of a new name: nothing else has changed.
    return atRow && m_isSameCount && !m_names.contains(atRow->name) ? atRow : nullptr;
  }

 private:
  std::set<std::string_view> m_names;
  std::map<std::string_view, const BrowserItem*> m_byName;
  std::vector<const BrowserItem*> m_inOrder;
  bool m_isSameCount = false;
};

void takeIds(Items& items, const Items& previous) {
  const Predecessors predecessors(items, previous);
  for (std::size_t row = 0; row < items.size(); ++row) {
    BrowserItem& item = items[row];
    const BrowserItem* const before = predecessors.of(item, row);
    if (!before) continue;
    if (item.id == 0) item.id = before->id;
    if (item.isContainer()) takeIds(item.children, before->children);
  }
  std::copy_if(previous.begin(), previous.end(), std::back_inserter(items),
               [](const auto& item) { return item.isNew; });
}

std::uint64_t largestId(const Items& items) {
  std::uint64_t largest = 0;
  for (const BrowserItem& item : items) largest = std::max({largest, item.id, largestId(item.children)});
  return largest;
}

}  // namespace

Items itemsOf(const Dictionary& entries, const BrowserLevel& level) {
  Items items;
  items.reserve(entries.size());
  for (const auto& [name, value] : entries) items.push_back(itemOf(name, value, level));
  return items;
}

BrowserItem itemOf(std::string name, const Value& value, const BrowserLevel& level) {
  BrowserItem item{.name = std::move(name)};
  item.mayBeUnnamed = item.name.empty();
  const auto* const integer = value.as<propertylist::Integer>();
  if (const auto* const entries = value.as<Dictionary>()) {
    item.content = BrowserItem::Entries();
    item.children = itemsOf(*entries, level.of(item));
  } else if (value.as<Array>()) {
    setArray(item, value, level);
  } else if (const auto* const isOn = value.as<bool>()) {
    item.content = *isOn;
  } else if (const auto* const text = value.as<std::string>()) {
    item.mayBeEmpty = text->empty();
    item.content = *text;
  } else if (const auto number = integer ? integer->toInt64() : std::nullopt) {
    item.content = *number;
  } else if (const auto* const real = value.as<double>()) {
    item.content = *real;
  } else {
    item.content = value;
  }
  return item;
}

Value valueOf(const BrowserItem& item) {
  struct {
    const BrowserItem& item;

    Value operator()(BrowserItem::Entries) const { return valueOf(item.children); }
    Value operator()(BrowserItem::Elements) const {
      Array array;
      for (const BrowserItem& element : item.children) {
        if (!element.isNew && !element.entered) array.push_back(valueOf(element));
      }
      return array;
    }
    Value operator()(const Strings& strings) const { return Array(strings.begin(), strings.end()); }
    Value operator()(const Value& kept) const { return kept; }
    Value operator()(bool isOn) const { return isOn; }
    Value operator()(const std::string& text) const { return text; }
    Value operator()(std::int64_t number) const { return number; }
    Value operator()(double number) const { return number; }
  } convert{item};
  return std::visit(convert, item.content);
}

Dictionary valueOf(const Items& entries) {
  Dictionary dictionary;
  for (const BrowserItem& item : entries) {
    if (!item.isNew && !item.entered) dictionary.set(item.name, valueOf(item));
  }
  return dictionary;
}

Items withoutNew(const Items& items) {
  Items result;
  std::copy_if(items.begin(), items.end(), std::back_inserter(result), [](const auto& item) { return !item.isNew; });
  for (BrowserItem& item : result) item.children = withoutNew(item.children);
  return result;
}

void assignIds(Items& items, std::uint64_t& lastId) {
  for (BrowserItem& item : items) {
    if (item.id == 0) item.id = ++lastId;
    assignIds(item.children, lastId);
  }
}

void succeed(Items& items, const Items& previous, std::uint64_t& lastId) {
  takeIds(items, previous);
  lastId = std::max(lastId, largestId(items));
  assignIds(items, lastId);
}

}  // namespace mirvel
