#include "core/jobfile/Plist.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "core/jobfile/MergeIntoFile.h"
#include "core/jobfile/PlistKeys.h"
#include "core/propertylist/Writer.h"

namespace mirvel::jobfile {

namespace {

constexpr auto keyTexts = textsOf(plistKeys);
constexpr std::string_view calendarKey = keyTexts[static_cast<std::size_t>(Plist::CodingKeys::StartCalendarInterval)];

}  // namespace

std::string_view Plist::text(CodingKeys key) {
  return keyTexts[static_cast<std::size_t>(key)];
}

std::optional<Plist::CodingKeys> Plist::codingKey(std::string_view text) {
  return codingKeyIn<CodingKeys>(keyTexts, text);
}

std::span<const std::string_view> Plist::knownKeys() {
  return keyTexts;
}

propertylist::Dictionary Plist::encode() const {
  return encodeKeys(*this, plistKeys);
}

propertylist::Dictionary Plist::encodeWithUnknown() const {
  propertylist::Dictionary known = encode();
  if (!unknownKeys || !dictionary) return known;
  std::vector<propertylist::Dictionary::Entry> entries(known.begin(), known.end());
  const std::unordered_set<std::string_view> unknown(unknownKeys->begin(), unknownKeys->end());
  for (const auto& member : dictionary->members()) {
    const bool isUnknown = unknown.contains(member.key()) && !known.find(member.key());
    if (isUnknown) entries.emplace_back(member.key(), propertylist::valueOf(member.value));
  }
  return propertylist::Dictionary::fromDistinct(std::move(entries));
}

/// The file as it was read, with the trees that replace its own, and without the values that the next save removes.
propertylist::Value Plist::fileToMergeInto() const {
  propertylist::Value file = dictionary ? dictionary->value() : propertylist::Dictionary();
  if (replacedTrees) {
    for (const auto& [key, tree] : *replacedTrees)
      file.as<propertylist::Dictionary>()->set(key, valueOf(*tree.find(key)));
  }
  for (const auto& path : removedValues) removeAt(file, path);
  return file;
}

/// Sets the keys of the replaced trees to what the record can represent of them.
void Plist::setTreesAsDecoded(propertylist::Dictionary& values) const {
  if (!replacedTrees) return;
  Plist decoded;
  for (const auto& [key, tree] : *replacedTrees) decodeKey(*codingKey(key), *tree.find(key), decoded);
  const propertylist::Dictionary encoded = decoded.encode();
  for (const auto& [key, tree] : *replacedTrees) values.set(key, *encoded.find(key));
}

/// The value of a key in the file or in the tree that replaces it; null if there is none.
const propertylist::Node* Plist::findInFile(std::string_view key) const {
  if (replacedTrees) {
    const auto found = replacedTrees->find(key);
    if (found != replacedTrees->end()) return found->second.find(key);
  }
  return dictionary ? dictionary->find(key) : nullptr;
}

propertylist::Dictionary Plist::encodeAll() const {
  const auto read = asRead();
  if (!read && !replacedTrees) return encode();
  const propertylist::Value whole = fileToMergeInto();
  const auto& file = *whole.as<propertylist::Dictionary>();
  propertylist::Dictionary readValues = read ? read->encodeWithUnknown() : propertylist::Dictionary();
  setTreesAsDecoded(readValues);
  propertylist::Dictionary merged = mergeIntoFile(file, readValues, encodeWithUnknown());
  // `mergeIntoFile` assumes that the elements of an array keep their order, which intervals don't, so they are merged
  // by their origins.
  const propertylist::Value* const intervals = file.find(calendarKey);
  if (!intervals || !read || !read->startCalendarInterval) return merged;
  auto merge =
      mergeIntervals(*intervals, *read->startCalendarInterval, startCalendarInterval.value_or(StartCalendarInterval()));
  const auto* list = merge.as<propertylist::Array>();
  if (!list || !list->empty()) merged.set(calendarKey, std::move(merge));
  return merged;
}

std::vector<OpaqueValue> Plist::opaqueValues() const {
  const auto read = asRead();
  if (!read) return {};
  const propertylist::Value whole = fileToMergeInto();
  const auto* const intervals = whole.as<propertylist::Dictionary>()->find(calendarKey);
  const auto arranged = [intervals](const Plist& record, Absent absent) {
    propertylist::Dictionary values = record.encodeWithUnknown();
    const auto& calendar = record.startCalendarInterval;
    if (intervals && calendar) values.set(calendarKey, arrangedLike(*intervals, *calendar, absent));
    return propertylist::Value(std::move(values));
  };
  propertylist::Value readValues = arranged(*read, Absent::IsEmpty);
  setTreesAsDecoded(*readValues.as<propertylist::Dictionary>());
  auto values = jobfile::opaqueValues(whole, readValues);
  // A value is gone if its key or interval was removed, or if the record has a value in its place now. Elements of the
  // list that never were intervals are independent of them.
  const propertylist::Value edited = arranged(*this, Absent::IsAsInFile);
  const bool isList = intervals && intervals->as<propertylist::Array>();
  std::erase_if(values, [&](const OpaqueValue& value) {
    const bool isElement = isList && value.path.size() == 2 && value.path.front() == calendarKey;
    if (isElement) return false;
    return !edited.as<propertylist::Dictionary>()->find(value.path.front()) || holdsAt(edited, value.path);
  });
  return values;
}

std::optional<propertylist::Value> Plist::savedValue(CodingKeys key) const {
  const std::string keyText(text(key));
  const auto only = [&keyText](const propertylist::Value* value) {
    return value ? propertylist::Dictionary{{keyText, *value}} : propertylist::Dictionary();
  };
  propertylist::Value file = propertylist::Dictionary();
  propertylist::Dictionary read;
  if (const auto* const node = findInFile(keyText)) {
    const propertylist::Value whole = valueOf(*node);
    file = only(&whole);
    Plist decoded;
    read = decodeKey(key, *node, decoded) ? only(decoded.encode().find(keyText)) : only(&whole);
  }
  for (const auto& path : removedValues) removeAt(file, path);
  const auto& fileEntries = *file.as<propertylist::Dictionary>();
  propertylist::Dictionary edited = only(encode().find(keyText));
  const bool isUnknown =
      unknownKeys && std::find(unknownKeys->begin(), unknownKeys->end(), keyText) != unknownKeys->end();
  if (edited.empty() && isUnknown) edited = read;
  const propertylist::Dictionary merged = mergeIntoFile(fileEntries, read, edited);
  const auto* const value = merged.find(keyText);
  return value ? std::optional(*value) : std::nullopt;
}

bool Plist::replaceTree(CodingKeys key, const std::optional<propertylist::Dictionary>& tree) {
  const std::string keyText(text(key));
  std::optional<FileDictionary> replacement;
  if (tree) {
    // Below its key, as the limits apply to the whole file.
    auto document = propertylist::read(propertylist::writeBinary(propertylist::Dictionary{{keyText, *tree}}));
    if (!document) return false;
    replacement.emplace(*std::move(document));
  }
  discardValue(key);
  if (!replacement) return true;
  decodeKey(key, *replacement->find(keyText), *this);
  const auto* const inFile = findInFile(keyText);
  if (inFile && valueOf(*inFile) == *tree) return true;
  if (!replacedTrees) replacedTrees.emplace();
  replacedTrees->insert_or_assign(keyText, *std::move(replacement));
  return true;
}

/// Makes the key absent, with everything in the file that no field represents.
void Plist::discardValue(CodingKeys key) {
  const std::string_view keyText = text(key);
  if (unknownKeys) std::erase(*unknownKeys, keyText);
  if (unknownKeys && unknownKeys->empty()) unknownKeys.reset();
  std::erase_if(removedValues, [&](const OpaqueValue::Path& path) { return path.front() == keyText; });
  if (replacedTrees) replacedTrees->erase(std::string(keyText));
  if (replacedTrees && replacedTrees->empty()) replacedTrees.reset();
  const auto resetField = [&](const auto& row) {
    if constexpr (requires { (this->*row.field).reset(); }) {
      if (row.key == key) (this->*row.field).reset();
    }
  };
  std::apply([&](const auto&... row) { (resetField(row), ...); }, plistKeys);
}

std::optional<Plist> Plist::asRead() const {
  if (!dictionary) return std::nullopt;
  Plist read;
  if (!decodeTolerantly(dictionary->root(), read)) return std::nullopt;
  read.dictionary = dictionary;
  return read;
}

Plist Plist::blankPlist() {
  Plist plist;
  plist.runAtLoad = true;
  return plist;
}

void Plist::setCalendarIntervals(std::optional<StartCalendarInterval> intervals) {
  const propertylist::Node* const inFile = dictionary ? dictionary->find(calendarKey) : nullptr;
  const bool isSingle = inFile ? inFile->type() == propertylist::Type::Dictionary
                               : startCalendarInterval && startCalendarInterval->singleValue;
  startCalendarInterval = std::move(intervals);
  if (startCalendarInterval) startCalendarInterval->singleValue = isSingle;
}

}  // namespace mirvel::jobfile
