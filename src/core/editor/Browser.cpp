#include "core/editor/Browser.h"

#include <algorithm>
#include <iterator>

#include "core/editor/BrowserProblems.h"
#include "core/editor/BrowserTexts.h"
#include "core/editor/BrowserTree.h"
#include "core/editor/EditorTexts.h"
#include "core/editor/ValueTexts.h"
#include "core/locale/Localize.h"

namespace mirvel {

namespace {

using propertylist::Dictionary;
using propertylist::Value;
using Items = std::vector<BrowserItem>;
using Type = BrowserItem::Type;

/// An item of the tree, after those that contain it, and the level of its siblings.
struct ItemPlace {
  std::vector<BrowserItem*> chain;
  const BrowserLevel* level = nullptr;

  BrowserItem& item() const { return *chain.back(); }
};

bool findItem(Items& items, const BrowserLevel& level, std::uint64_t id, ItemPlace& place) {
  for (BrowserItem& item : items) {
    place.chain.push_back(&item);
    place.level = &level;
    if (item.id == id || findItem(item.children, level.of(item), id, place)) return true;
    place.chain.pop_back();
  }
  return false;
}

std::size_t rowOf(const Items& items, std::uint64_t id) {
  const auto found = std::find_if(items.begin(), items.end(), [id](const BrowserItem& item) { return item.id == id; });
  return static_cast<std::size_t>(std::distance(items.begin(), found));
}

bool isNamed(const Items& items, std::string_view name) {
  return std::any_of(items.begin(), items.end(), [name](const BrowserItem& item) { return item.name == name; });
}

bool allows(std::span<const Type> types, Type type) {
  return std::find(types.begin(), types.end(), type) != types.end();
}

/// An item without a value, unless the key has a default of its own: false, 0 or an empty text could do harm.
BrowserItem newItem(const BrowserLevel::Offer& offer, const BrowserLevel& level) {
  const BrowserItem::Content contents[] = {BrowserItem::Entries(),
                                           BrowserItem::Elements(),
                                           offer.isOn.value_or(false),
                                           std::string(),
                                           std::int64_t{0},
                                           0.0,
                                           std::vector<std::string>()};
  BrowserItem item{.name = {}, .content = contents[static_cast<std::size_t>(offer.type)]};
  if (!item.isContainer() && !offer.isOn) item.entered = "";
  item.isNew = !level.hasFixedNames && !level.isArray;
  if (!level.hasFixedNames) return item;
  item.name = offer.title;
  item.isTypeOpen = offer.type == Type::String && allows(offer.types, Type::Integer);
  return item;
}

std::string titleOf(const Items& items, std::size_t row, const BrowserLevel& level, const Localize& localize) {
  return level.isArray ? localize.int_(static_cast<std::int64_t>(row) + 1) : items[row].name;
}

std::string titleOf(const BrowserLevel::Offer& offer, const BrowserLevel& level, const Localize& localize) {
  if (level.hasFixedNames) return std::string(offer.title);
  return level.elements ? BrowserTexts(localize).socket() : BrowserTexts(localize).type(offer.type);
}

}  // namespace

Browser::Browser(const BrowserSchema& schema, const Localize& localize, const Scheduled::NumberText& numbers,
                 Changed changed)
    : m_schema(schema), m_localize(localize), m_numbers(numbers), m_changed(std::move(changed)) {}

void Browser::fill(const jobfile::Plist& plist, const Unfinished& unfinished) {
  m_isBlocked = false;
  const auto tree = unfinished.trees.find(m_schema.text());
  if (tree != unfinished.trees.end()) {
    if (tree->second != withoutNew(m_items)) show(tree->second);
    return;
  }
  const auto saved = plist.savedValue(m_schema.key);
  const auto* const entries = saved ? saved->as<Dictionary>() : nullptr;
  m_isBlocked = saved && !entries;
  const auto shown = value();
  const bool isSame = shown && entries ? *shown == *entries : !shown && !entries;
  if (!isSame || refusedPath()) show(entries ? mirvel::itemsOf(*entries, *m_schema.top) : Items());
}

void Browser::show(Items items) {
  succeed(items, m_items, m_lastId);
  m_items = std::move(items);
  m_path.resize(path().size());
}

void Browser::write(jobfile::Plist& plist, Unfinished& unfinished) const {
  const std::string key(m_schema.text());
  if (!refusedPath() && plist.replaceTree(m_schema.key, value())) {
    unfinished.trees.erase(key);
  } else {
    unfinished.trees.insert_or_assign(key, withoutNew(m_items));
  }
}

std::optional<Dictionary> Browser::value() const {
  const bool isEmpty = std::all_of(m_items.begin(), m_items.end(), [](const BrowserItem& item) { return item.isNew; });
  return isEmpty ? std::nullopt : std::optional(valueOf(m_items));
}

std::optional<InvalidField> Browser::refuse() const {
  Path path;
  auto reason = BrowserProblems::first(m_items, *m_schema.top, m_localize, path);
  std::string name(m_schema.text());
  if (!reason) {
    if (jobfile::Plist().replaceTree(m_schema.key, value())) return std::nullopt;
    reason = BrowserTexts(m_localize).theListIsTooDeep();
  }
  const Items* items = &m_items;
  const BrowserLevel* level = m_schema.top;
  for (const std::size_t row : path) {
    name += '.' + titleOf(*items, row, *level, m_localize);
    const BrowserItem& item = (*items)[row];
    level = &level->of(item);
    items = &item.children;
  }
  return InvalidField{.message = EditorTexts(m_localize).fieldCantBeSaved(name), .reason = *std::move(reason)};
}

std::string Browser::emptyText() const {
  const BrowserTexts texts(m_localize);
  return m_isBlocked ? texts.theValueIsNoDictionary(m_schema.text()) : texts.noEntries(m_schema.text());
}

std::optional<Browser::Path> Browser::refusedPath() const {
  Path path;
  return BrowserProblems::first(m_items, *m_schema.top, m_localize, path) ? std::optional(path) : std::nullopt;
}

/// The entries of a column; none if the column doesn't exist.
Browser::Column Browser::at(std::size_t column) const {
  Column result{&m_items, m_schema.top};
  for (std::size_t before = 0; before < column; ++before) {
    const std::size_t row = before < m_path.size() ? rowOf(*result.items, m_path[before]) : result.items->size();
    if (row == result.items->size() || !(*result.items)[row].isContainer()) return {};
    const BrowserItem& item = (*result.items)[row];
    result = {&item.children, &result.level->of(item)};
  }
  return result;
}

const BrowserItem* Browser::itemAt(std::size_t column, std::size_t row) const {
  const Items& found = items(column);
  return row < found.size() ? &found[row] : nullptr;
}

/// The selected items of the columns before an existing column.
std::vector<BrowserItem*> Browser::selectedBefore(std::size_t column) {
  std::vector<BrowserItem*> chain;
  Items* items = &m_items;
  for (std::size_t before = 0; before < column; ++before) {
    chain.push_back(&(*items)[rowOf(*items, m_path[before])]);
    items = &chain.back()->children;
  }
  return chain;
}

/// The items of an existing column, for a change.
Items& Browser::changeable(std::size_t column) {
  const auto chain = selectedBefore(column);
  return chain.empty() ? m_items : chain.back()->children;
}

std::size_t Browser::columnCount() const {
  std::size_t count = 1;
  while (at(count).items) ++count;
  return count;
}

const Items& Browser::items(std::size_t column) const {
  static const Items none;
  const Items* const found = at(column).items;
  return found ? *found : none;
}

std::string Browser::title(std::size_t column, std::size_t row) const {
  return itemAt(column, row) ? titleOf(items(column), row, *at(column).level, m_localize) : std::string();
}

std::optional<std::size_t> Browser::selected(std::size_t column) const {
  const Items& found = items(column);
  if (column >= m_path.size()) return std::nullopt;
  const std::size_t row = rowOf(found, m_path[column]);
  return row < found.size() ? std::optional(row) : std::nullopt;
}

void Browser::select(std::size_t column, std::optional<std::size_t> row) {
  const Column place = at(column);
  if (!place.items || column > m_path.size() || (row && *row >= place.items->size())) return;
  const std::uint64_t id = row ? (*place.items)[*row].id : 0;
  m_path.resize(column);
  if (row) m_path.push_back(id);
}

Browser::Path Browser::path() const {
  Path rows;
  while (const auto row = selected(rows.size())) rows.push_back(*row);
  return rows;
}

void Browser::select(const Path& path) {
  for (std::size_t column = 0; column < path.size(); ++column) select(column, path[column]);
}

std::optional<std::string> Browser::problem(std::size_t column, std::size_t row) const {
  const BrowserItem* const item = itemAt(column, row);
  if (!item) return std::nullopt;
  const Column place = at(column);
  return BrowserProblems::at(*place.items, row, *place.level, m_localize);
}

std::optional<BrowserPreview> Browser::preview() const {
  const Path rows = path();
  const BrowserItem* const item = rows.empty() ? nullptr : itemAt(rows.size() - 1, rows.back());
  if (!item || item->isContainer()) return std::nullopt;
  const BrowserLevel& level = *at(rows.size() - 1).level;
  const auto form = BrowserLeaf::formOf(*item, level);
  BrowserPreview preview{.item = item->id, .name = item->name, .text = BrowserLeaf::text(*item, form)};
  preview.control = BrowserPreview::Control::Text;
  preview.problem = BrowserLeaf::problem(*item, form, m_localize);
  if (const auto* const offer = level.fixed(item->name)) {
    preview.choices = offer->choices;
    preview.help = offer->help;
  }
  if (const auto* const isOn = std::get_if<bool>(&item->content)) {
    preview.control = BrowserPreview::Control::Box;
    if (!item->entered) preview.isOn = *isOn;
    if (!item->entered) preview.text = *isOn ? m_localize.on() : m_localize.off();
  } else if (const auto* const strings = std::get_if<std::vector<std::string>>(&item->content)) {
    preview.control = BrowserPreview::Control::Strings;
    preview.strings = *strings;
  } else if (const auto* const kept = std::get_if<Value>(&item->content)) {
    preview.control = BrowserPreview::Control::Description;
    preview.text = description(*kept, m_localize);
  }
  return preview;
}

bool Browser::isNameEditable(std::size_t column, std::size_t row) const {
  const Column place = at(column);
  if (!place.items || row >= place.items->size()) return false;
  return !place.level->isArray && !place.level->fixed((*place.items)[row].name);
}

std::vector<Browser::Offer> Browser::offers(std::size_t column) const {
  std::vector<Offer> result;
  const Column place = at(column);
  if (!place.items) return result;
  for (const BrowserLevel::Offer& offer : place.level->offers) {
    const bool isThere = place.level->hasFixedNames && isNamed(*place.items, offer.title);
    result.push_back(
        {.title = titleOf(offer, *place.level, m_localize), .help = offer.help, .isEnabled = !isThere && !m_isBlocked});
  }
  return result;
}

std::optional<std::size_t> Browser::add(std::size_t column, std::size_t offer) {
  const auto available = offers(column);
  if (offer >= available.size() || !available[offer].isEnabled) return std::nullopt;
  const BrowserLevel& level = *at(column).level;
  const std::size_t row = items(column).size();
  insert(column, row, {newItem(level.offers[offer], level)});
  return row;
}

/// Inserts items in an existing column and selects the first one.
void Browser::insert(std::size_t column, std::size_t row, Items added) {
  assignIds(added, m_lastId);
  const bool isEdit = !added.front().isNew;
  Items& items = changeable(column);
  items.insert(items.begin() + static_cast<std::ptrdiff_t>(row), std::make_move_iterator(added.begin()),
               std::make_move_iterator(added.end()));
  select(column, row);
  if (isEdit) changedBelow(column);
}

void Browser::remove(std::size_t column, std::size_t row) {
  if (!itemAt(column, row)) return;
  Items& items = changeable(column);
  const bool isEdit = !items[row].isNew;
  const bool wasSelected = selected(column) == row;
  items.erase(items.begin() + static_cast<std::ptrdiff_t>(row));
  const std::size_t next = std::min(row, items.empty() ? 0 : items.size() - 1);
  if (wasSelected) select(column, items.empty() ? std::nullopt : std::optional(next));
  if (isEdit) changedBelow(column);
}

void Browser::cancelNaming(std::size_t column, std::size_t row) {
  const BrowserItem* const item = itemAt(column, row);
  if (item && item->isNew) remove(column, row);
}

void Browser::rename(std::size_t column, std::size_t row, const std::string& name) {
  if (!isNameEditable(column, row) || itemAt(column, row)->name == name) return;
  BrowserItem& item = changeable(column)[row];
  item.name = name;
  item.isNew = false;
  changedBelow(column);
}

std::vector<Browser::TypeChoice> Browser::types(std::size_t column, std::size_t row) const {
  std::vector<TypeChoice> result;
  const BrowserItem* const item = itemAt(column, row);
  if (!item) return result;
  const BrowserLevel& level = *at(column).level;
  const auto add = [&](Type type) {
    result.push_back({.type = type,
                      .title = BrowserTexts(m_localize).type(type),
                      .isCurrent = type == item->type(),
                      .isEnabled = BrowserLeaf::converted(*item, type, level, m_numbers).has_value()});
  };
  const auto allowed = level.types(*item);
  if (!allows(allowed, item->type())) add(item->type());
  for (const Type type : allowed) add(type);
  return result;
}

void Browser::setType(std::size_t column, std::size_t row, Type type) {
  const auto choices = types(column, row);
  const bool isChoice = std::any_of(choices.begin(), choices.end(), [type](const TypeChoice& choice) {
    return choice.type == type && choice.isEnabled && !choice.isCurrent;
  });
  const Column place = at(column);
  if (!isChoice || !place.level) return;
  Items& items = changeable(column);
  items[row] = *BrowserLeaf::converted(items[row], type, *place.level, m_numbers);
  assignIds(items, m_lastId);
  m_path.resize(path().size());
  changedBelow(column);
}

bool Browser::matchesValue(std::uint64_t item, const std::string& text) const {
  Items items = m_items;
  ItemPlace place;
  if (!findItem(items, *m_schema.top, item, place)) return false;
  const BrowserItem before = place.item();
  BrowserLeaf::enter(place.item(), text, BrowserLeaf::formOf(before, *place.level), m_numbers);
  return place.item() == before;
}

void Browser::enterText(std::uint64_t item, const std::string& text) {
  changeLeaf(item, Editing::Step::Continues, [&](BrowserItem& leaf, const BrowserLevel& level) {
    BrowserLeaf::enter(leaf, text, BrowserLeaf::formOf(leaf, level), m_numbers);
  });
}

void Browser::setOn(std::uint64_t item, bool isOn) {
  changeLeaf(item, Editing::Step::Begins, [isOn](BrowserItem& leaf, const BrowserLevel& /*level*/) {
    if (leaf.type() != Type::Boolean) return;
    leaf.content = isOn;
    leaf.entered.reset();
  });
}

void Browser::setStrings(std::uint64_t item, std::vector<std::string> strings, Editing::Step step) {
  changeLeaf(item, step, [&](BrowserItem& leaf, const BrowserLevel& /*level*/) {
    if (leaf.type() != Type::Strings) return;
    const bool isValue = !strings.empty() || leaf.mayBeEmpty;
    leaf.content = std::move(strings);
    leaf.entered = isValue ? std::nullopt : std::optional(std::string());
  });
}

void Browser::changeLeaf(std::uint64_t id, Editing::Step step, const LeafChange& change) {
  ItemPlace place;
  if (!findItem(m_items, *m_schema.top, id, place)) return;
  const BrowserItem before = place.item();
  change(place.item(), *place.level);
  if (place.item() == before) return;
  for (BrowserItem* const item : place.chain) item->isNew = false;
  changed(step, std::string(m_schema.text()) + '/' + std::to_string(id));
}

/// Reports a change of the items in a column. What contains them isn't new any more.
void Browser::changedBelow(std::size_t column) {
  for (BrowserItem* const item : selectedBefore(column)) item->isNew = false;
  changed(Editing::Step::Begins, {});
}

void Browser::changed(Editing::Step step, const std::string& place) const {
  if (m_changed) m_changed(step, place);
}

}  // namespace mirvel
