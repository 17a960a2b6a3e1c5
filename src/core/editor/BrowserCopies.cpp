#include <algorithm>
#include <set>
#include <string_view>

#include "core/editor/Browser.h"
#include "core/editor/BrowserProblems.h"
#include "core/editor/BrowserTexts.h"
#include "core/editor/BrowserTree.h"
#include "core/propertylist/Document.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace {

using propertylist::Array;
using propertylist::Dictionary;
using propertylist::Value;
using Items = std::vector<BrowserItem>;

void clearIds(Items& items) {
  for (BrowserItem& item : items) {
    item.id = 0;
    clearIds(item.children);
  }
}

std::string freeName(const Items& items, const std::string& name) {
  std::set<std::string_view> names;
  for (const BrowserItem& item : items) names.insert(item.name);
  for (std::size_t number = 2;; ++number) {
    std::string candidate = name + ' ' + std::to_string(number);
    if (!names.contains(candidate)) return candidate;
  }
}

std::size_t depthOf(const Value& value) {
  std::size_t depth = 0;
  const auto add = [&depth](const Value& below) { depth = std::max(depth, depthOf(below)); };
  if (const auto* const array = value.as<Array>()) {
    for (const Value& element : *array) add(element);
  } else if (const auto* const entries = value.as<Dictionary>()) {
    for (const auto& [key, entry] : *entries) add(entry);
  }
  return depth + 1;
}

bool areDictionaries(const Array& values) {
  return !values.empty() && std::all_of(values.begin(), values.end(),
                                        [](const Value& value) { return value.as<Dictionary>() != nullptr; });
}

/// The elements that a list adds to an array of dictionaries; empty if it has none.
Array elementsIn(const Value& list) {
  if (const auto* const array = list.as<Array>()) return areDictionaries(*array) ? *array : Array();
  Array values;
  for (const auto& [name, value] : *list.as<Dictionary>()) values.push_back(value);
  return areDictionaries(values) ? values : Array{list};
}

}  // namespace

bool Browser::canDuplicate(std::size_t column, std::size_t row) const {
  const BrowserItem* const item = itemAt(column, row);
  return item && !item->isNew && (at(column).level->isArray || isNameEditable(column, row));
}

void Browser::duplicate(std::size_t column, std::size_t row) {
  if (!canDuplicate(column, row)) return;
  Items copies = withoutNew({items(column)[row]});
  clearIds(copies);
  if (!at(column).level->isArray) copies.front().name = freeName(items(column), copies.front().name);
  insert(column, row + 1, std::move(copies));
}

std::optional<std::string> Browser::copy(std::size_t column, std::size_t row) const {
  const BrowserItem* const item = itemAt(column, row);
  if (!item || item->isNew) return std::nullopt;
  Path path;
  if (BrowserProblems::first({*item}, *at(column).level, m_localize, path)) return std::nullopt;
  const Value value = valueOf(*item);
  const bool isElement = at(column).level->isArray;
  auto text = propertylist::writeXml(isElement ? Value(Array{value}) : Value(Dictionary{{item->name, value}}));
  return text ? std::optional(*std::move(text)) : std::nullopt;
}

std::optional<InvalidField> Browser::paste(std::size_t column, const std::string& text) {
  if (!at(column).items) return std::nullopt;
  if (m_isBlocked) return cantBePasted(emptyText());
  const auto list = propertylist::read(text);
  const bool hasItems = list && (list->root().dictionary() || list->root().array());
  return hasItems ? pasteItems(column, list->value()) : pasteLines(column, text);
}

std::optional<InvalidField> Browser::pasteItems(std::size_t column, const Value& list) {
  const BrowserTexts texts(m_localize);
  // The file and the key are above the columns, and a dictionary can become an array.
  if (column + depthOf(list) + 3 > propertylist::Limits::depth) return cantBePasted(texts.theListIsTooDeep());
  const BrowserLevel& level = *at(column).level;
  Items added;
  if (level.isArray) {
    for (const Value& element : elementsIn(list)) added.push_back(itemOf({}, element, level));
    if (added.empty()) return cantBePasted(texts.onlyDictionariesCanBePasted());
  } else {
    if (const auto* const entries = list.as<Dictionary>()) added = mirvel::itemsOf(*entries, level);
    if (added.empty()) return cantBePasted(texts.onlyPropertyListsCanBePasted());
  }
  insert(column, items(column).size(), std::move(added));
  return std::nullopt;
}

std::optional<InvalidField> Browser::pasteLines(std::size_t column, const std::string& text) {
  const auto row = selected(column);
  const BrowserItem* const item = row ? itemAt(column, *row) : nullptr;
  const auto* const present = item ? std::get_if<std::vector<std::string>>(&item->content) : nullptr;
  if (!present) return cantBePasted(BrowserTexts(m_localize).onlyPropertyListsCanBePasted());
  auto strings = *present;
  for (std::string_view line : String::split(text, '\n')) {
    line = String::chop(line, "\r", String::Edge::End);
    if (!line.empty()) strings.emplace_back(line);
  }
  setStrings(item->id, std::move(strings));
  return std::nullopt;
}

InvalidField Browser::cantBePasted(std::string reason) const {
  return {.message = BrowserTexts(m_localize).itCantBePastedHere(), .reason = std::move(reason)};
}

}  // namespace mirvel
