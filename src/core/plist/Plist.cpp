#include "core/plist/Plist.h"

#include "core/plist/IntervalOrigins.h"
#include "core/plist/MergeIntoFile.h"
#include "core/plist/PlistKeys.h"
#include "core/schedule/AppliedRules.h"

namespace mirvel::launchd {

namespace {

constexpr auto keyTexts = textsOf(plistKeys);
constexpr std::string_view calendarKey = keyTexts[static_cast<std::size_t>(Plist::CodingKeys::startCalendarInterval)];

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

plist::Dictionary Plist::encode() const {
  return encodeKeys(*this, plistKeys);
}

plist::Dictionary Plist::encodeWithUnknown() const {
  plist::Dictionary file = encode();
  if (!unknownKeys || !dictionary) return file;
  for (const std::string& key : *unknownKeys) {
    const plist::Node* const value = dictionary->find(key);
    if (value && !file.find(key)) file.set(key, plist::valueOf(*value));
  }
  return file;
}

/// The file as it was read, without what the next save takes out.
plist::Value Plist::fileWithoutRemoved() const {
  plist::Value file = dictionary->value();
  for (const auto& path : removedValues) removeAt(file, path);
  return file;
}

plist::Dictionary Plist::encodeAll() const {
  const auto read = asRead();
  if (!read) return encode();
  const plist::Value whole = fileWithoutRemoved();
  const auto& file = *whole.as<plist::Dictionary>();
  plist::Dictionary merged = mergeIntoFile(file, read->encodeWithUnknown(), encodeWithUnknown());
  // Other lists are paired by their ends. Intervals know their elements, since they are grouped and sorted for the
  // rows.
  const plist::Value* const intervals = file.find(calendarKey);
  if (!intervals || !read->startCalendarInterval) return merged;
  auto merge =
      mergeIntervals(*intervals, *read->startCalendarInterval, startCalendarInterval.value_or(StartCalendarInterval()));
  const auto* list = merge.as<plist::Array>();
  if (!list || !list->empty()) merged.set(calendarKey, std::move(merge));
  return merged;
}

std::vector<OpaqueValue> Plist::opaqueValues() const {
  const auto read = asRead();
  if (!read) return {};
  const plist::Value whole = fileWithoutRemoved();
  const auto* const intervals = whole.as<plist::Dictionary>()->find(calendarKey);
  const auto arranged = [intervals](const Plist& record, Absent absent) {
    plist::Dictionary values = record.encodeWithUnknown();
    const auto& calendar = record.startCalendarInterval;
    if (intervals && calendar) values.set(calendarKey, arrangedLike(*intervals, *calendar, absent));
    return plist::Value(std::move(values));
  };
  auto values = launchd::opaqueValues(whole, arranged(*read, Absent::IsEmpty));
  // What belongs to a key or an interval that was removed goes with it, unless the interval never was one.
  const plist::Value edited = arranged(*this, Absent::IsAsInFile);
  const bool isList = intervals && intervals->as<plist::Array>();
  std::erase_if(values, [&](const OpaqueValue& value) {
    const bool isElement = isList && value.path.size() == 2 && value.path.front() == calendarKey;
    if (isElement) return false;
    return !edited.as<plist::Dictionary>()->find(value.path.front()) || holdsAt(edited, value.path);
  });
  return values;
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

void Plist::applyRules(Scheduled::AppliedRules rules) {
  const plist::Node* const inFile = dictionary ? dictionary->find(calendarKey) : nullptr;
  const bool isSingle =
      inFile ? inFile->type() == plist::Type::Dictionary : startCalendarInterval && startCalendarInterval->singleValue;
  startInterval = rules.startInterval;
  startCalendarInterval = std::move(rules.startCalendarInterval);
  if (startCalendarInterval) startCalendarInterval->singleValue = isSingle;
}

}  // namespace mirvel::launchd
