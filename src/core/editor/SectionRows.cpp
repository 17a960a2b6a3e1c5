#include "core/editor/SectionRows.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

#include "core/editor/BrowserSchema.h"
#include "core/editor/Fields.h"
#include "core/editor/LooksSecret.h"
#include "core/editor/NestedRows.h"
#include "core/editor/ValueTexts.h"
#include "core/files/URL.h"
#include "core/session/Foundation.h"

namespace mirvel {

namespace {

using jobfile::Plist;
using Rows = std::vector<KeyValueItem>;

Rows rowsOfFields(StackSection section, const Plist& plist, const ValueTexts& texts) {
  Rows rows;
  for (const Field& field : fieldsOf(section)) {
    if (auto value = field.access.display(plist, texts)) rows.push_back({std::string(field.key), std::move(*value)});
  }
  return rows;
}

/// As `rowsOfFields`, without empty texts.
Rows rowsWithText(StackSection section, const Plist& plist, const ValueTexts& texts) {
  Rows rows = rowsOfFields(section, plist, texts);
  std::erase_if(
      rows, [&](const KeyValueItem& row) { return fieldOf(row.key).access.read(plist) == FieldValue(std::string()); });
  return rows;
}

Rows environmentRows(const Plist& plist, const Collator& collator) {
  Rows rows;
  if (!plist.environmentVariables) return rows;
  for (const auto& [name, value] : *plist.environmentVariables) {
    rows.push_back({.key = name, .value = value, .isSecret = !value.empty() && looksSecret(name)});
  }
  NestedRows::sortByKey(rows, collator);
  return rows;
}

void addUnknownKeys(const Plist& plist, Rows& rows) {
  if (!plist.unknownKeys) return;
  std::unordered_map<std::string_view, const propertylist::Node*> values;
  for (const propertylist::Member& member : plist.dictionary->members()) values.emplace(member.key(), &member.value);
  const propertylist::Dictionary known = plist.encode();
  for (const std::string& key : *plist.unknownKeys) {
    const auto found = values.find(key);
    const bool isReplaced = known.find(key) != nullptr;  // the user has entered a value in place of one of a wrong type
    if (found != values.end() && !isReplaced) rows.push_back({key, valueOf(*found->second)});
  }
}

using IsShownElsewhere = bool (*)(const jobfile::OpaqueValue& value);

/// The unknown keys, and the opaque values within known ones.
Rows unknownRows(const Plist& plist, IsShownElsewhere isShownElsewhere) {
  Rows rows;
  if (!plist.dictionary) return rows;
  addUnknownKeys(plist, rows);
  for (auto& opaque : plist.opaqueValues()) {
    if (!isShownElsewhere(opaque)) rows.push_back({opaque.text(), std::move(opaque.value)});
  }
  return rows;
}

}  // namespace

Rows sectionRows(StackSection section, const Plist& plist, const Foundation& foundation) {
  const ValueTexts texts(foundation.localize, foundation.roots.home.native());
  const Collator& collator = foundation.collator;
  switch (section) {
    case StackSection::Paths:
    case StackSection::Root:
      return rowsWithText(section, plist, texts);
    case StackSection::Limits:
    case StackSection::Miscellaneous:
    case StackSection::Deprecated:
      return rowsOfFields(section, plist, texts);
    case StackSection::EnvironmentVariables:
      return environmentRows(plist, collator);
    case StackSection::LaunchEvents:
      return plist.launchEvents ? NestedRows::launchEvents(*plist.launchEvents, texts, collator) : Rows();
    case StackSection::MachServices:
      return plist.machServices ? NestedRows::machServices(*plist.machServices, texts, collator) : Rows();
    case StackSection::Sockets:
      return plist.sockets ? NestedRows::sockets(*plist.sockets, texts, collator) : Rows();
    case StackSection::Unknown:
      return unknownRows(plist, isInBrowser);
    case StackSection::General:
    case StackSection::Runs:
    case StackSection::When:
    case StackSection::Notes:
      return {};
  }
  return {};
}

Rows editorRows(StackSection section, const Plist& plist, const Foundation& foundation) {
  const auto hasBrowser = [](const jobfile::OpaqueValue& value) {
    return browserSchema(value.path.front()) != nullptr;
  };
  if (section == StackSection::Unknown) return unknownRows(plist, hasBrowser);
  return sectionRows(section, plist, foundation);
}

bool deleteDeprecated(jobfile::Plist& plist, std::string_view key) {
  for (const Field& field : fieldsOf(StackSection::Deprecated)) {
    if (field.key != key || !field.access.isSet(plist)) continue;
    field.access.remove(plist);
    return true;
  }
  return false;
}

bool deleteUnknown(jobfile::Plist& plist, std::string_view key) {
  if (plist.unknownKeys) {
    auto& keys = *plist.unknownKeys;
    const auto found = std::find(keys.begin(), keys.end(), key);
    if (found != keys.end()) {
      keys.erase(found);
      return true;
    }
  }
  const auto values = plist.opaqueValues();
  const auto opaque =
      std::find_if(values.begin(), values.end(), [key](const auto& value) { return value.text() == key; });
  if (opaque == values.end()) return false;
  plist.removedValues.push_back(opaque->path);
  return true;
}

}  // namespace mirvel
