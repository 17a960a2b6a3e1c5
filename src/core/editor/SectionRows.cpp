#include "core/editor/SectionRows.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <unordered_map>

#include "core/editor/NestedRows.h"
#include "core/editor/SectionKeys.h"
#include "core/editor/ValueTexts.h"
#include "core/files/URL.h"
#include "core/text/Digits.h"

namespace mirvel {

namespace {

using jobfile::Plist;
using Rows = std::vector<KeyValueItem>;

// The forms of the values of single keys.

propertylist::Value shown(bool value, const ValueTexts& /*texts*/) {
  return value;
}

propertylist::Value shown(std::int64_t value, const ValueTexts& texts) {
  return texts.number(value);
}

propertylist::Value shown(const std::string& value, const ValueTexts& /*texts*/) {
  return value;
}

propertylist::Value shown(const std::vector<std::string>& value, const ValueTexts& /*texts*/) {
  return joinedLines(value);
}

propertylist::Value shown(const Plist::LimitLoadToSessionType& value, const ValueTexts& /*texts*/) {
  return joinedLines(value.types);
}

propertylist::Value shown(const jobfile::StringMap<std::vector<std::string>>& value, const ValueTexts& /*texts*/) {
  std::vector<std::string> lines;
  for (const auto& [key, values] : value) lines.insert(lines.end(), values.begin(), values.end());
  return joinedLines(lines);
}

propertylist::Value shown(const Plist::ResourceLimits& value, const ValueTexts& texts) {
  using Limits = Plist::ResourceLimits;
  using K = Limits::CodingKeys;
  std::vector<std::string> lines;
  const auto add = [&](K key, std::optional<std::int64_t> limit) {
    if (limit) lines.push_back(texts.line(std::string(Limits::text(key)), texts.number(*limit)));
  };
  add(K::core, value.core);
  add(K::cpu, value.cpu);
  add(K::data, value.data);
  add(K::fileSize, value.fileSize);
  add(K::memoryLock, value.memoryLock);
  add(K::numberOfFiles, value.numberOfFiles);
  add(K::numberOfProcesses, value.numberOfProcesses);
  add(K::residentSetSize, value.residentSetSize);
  add(K::stack, value.stack);
  return joinedLines(lines);
}

std::optional<propertylist::Value> shown(const Plist::Umask& value, const ValueTexts& /*texts*/) {
  return value.int_ ? std::optional<propertylist::Value>(Octal::displayString(*value.int_)) : std::nullopt;
}

propertylist::Value shown(const Plist::InetdCompatibility& value, const ValueTexts& texts) {
  jobfile::StringMap<std::string> entries;
  for (const auto& [key, isOn] : value.bools) entries.emplace(key, texts.boolean(isOn));
  for (const auto& [key, number] : value.integers) entries.emplace(key, texts.number(number));
  std::vector<std::string> lines;
  for (const auto& [key, text] : entries) lines.push_back(texts.line(key, text));
  return joinedLines(lines);
}

template <typename Keys>
Rows rowsOf(const Plist& plist, const ValueTexts& texts) {
  Rows rows;
  Keys::forEach([&](const auto& key) {
    const auto& field = plist.*key.field;
    if (!field.has_value()) return;
    if (std::optional<propertylist::Value> value = shown(*field, texts)) {
      rows.push_back({std::string(key.text), std::move(*value)});
    }
  });
  return rows;
}

bool isEmptyText(const KeyValueItem& row) {
  const auto* text = row.value.as<std::string>();
  return text && text->empty();
}

// The sections that need more than the forms of their keys.

std::string pathLines(const std::vector<std::string>& paths, const std::string& home) {
  std::vector<std::string> lines;
  for (const std::string& path : paths) {
    if (!path.empty()) lines.push_back(path.front() == '/' ? localizedDisplayPath(path, home) : path);
  }
  return joinedLines(lines);
}

Rows pathRows(const Plist& plist, const ValueTexts& texts, const std::string& home) {
  Rows rows = rowsOf<SectionKeys::Paths>(plist, texts);
  std::erase_if(rows, isEmptyText);
  SectionKeys::PathLists::forEach([&](const auto& key) {
    const auto& paths = plist.*key.field;
    if (paths && !paths->empty()) rows.push_back({std::string(key.text), pathLines(*paths, home)});
  });
  return rows;
}

Rows rootRows(const Plist& plist, const ValueTexts& texts) {
  Rows rows = rowsOf<SectionKeys::Root>(plist, texts);
  std::erase_if(rows, isEmptyText);
  return rows;
}

Rows environmentRows(const Plist& plist, const Collator& collator) {
  Rows rows;
  if (!plist.environmentVariables) return rows;
  for (const auto& [name, value] : *plist.environmentVariables) rows.push_back({name, value});
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
    const bool isReplaced = known.find(key) != nullptr;  // by what the user entered for a value that didn't fit
    if (found != values.end() && !isReplaced) rows.push_back({key, valueOf(*found->second)});
  }
}

/// What the editor has no control for: the unknown keys, and what lies below known ones.
Rows unknownRows(const Plist& plist) {
  Rows rows;
  if (!plist.dictionary) return rows;
  addUnknownKeys(plist, rows);
  for (auto& opaque : plist.opaqueValues()) rows.push_back({opaque.text(), std::move(opaque.value)});
  return rows;
}

}  // namespace

Rows sectionRows(StackSection section, const Plist& plist, const Foundation& foundation) {
  const ValueTexts texts(foundation.localize);
  const Collator& collator = foundation.collator;
  switch (section) {
    case StackSection::paths:
      return pathRows(plist, texts, foundation.roots.home.native());
    case StackSection::limits:
      return rowsOf<SectionKeys::Limits>(plist, texts);
    case StackSection::root:
      return rootRows(plist, texts);
    case StackSection::miscellaneous:
      return rowsOf<SectionKeys::Miscellaneous>(plist, texts);
    case StackSection::environmentVariables:
      return environmentRows(plist, collator);
    case StackSection::launchEvents:
      return plist.launchEvents ? NestedRows::launchEvents(*plist.launchEvents, texts, collator) : Rows();
    case StackSection::machServices:
      return plist.machServices ? NestedRows::machServices(*plist.machServices, texts, collator) : Rows();
    case StackSection::sockets:
      return plist.sockets ? NestedRows::sockets(*plist.sockets, texts, collator) : Rows();
    case StackSection::deprecated:
      return rowsOf<SectionKeys::Deprecated>(plist, texts);
    case StackSection::unknown:
      return unknownRows(plist);
    case StackSection::general:
    case StackSection::when:
    case StackSection::notes:
      return {};
  }
  return {};
}

}  // namespace mirvel
