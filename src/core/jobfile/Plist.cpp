#include "core/jobfile/Plist.h"

#include <unordered_set>
#include <utility>

#include "core/jobfile/MergeIntoFile.h"
#include "core/jobfile/PlistKeys.h"

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
  const propertylist::Dictionary known = encode();
  if (!unknownKeys || !dictionary) return known;
  std::vector<propertylist::Dictionary::Entry> entries(known.begin(), known.end());
  const std::unordered_set<std::string_view> unknown(unknownKeys->begin(), unknownKeys->end());
  for (const auto& member : dictionary->members()) {
    const bool isUnknown = unknown.contains(member.key()) && !known.find(member.key());
    if (isUnknown) entries.emplace_back(member.key(), propertylist::valueOf(member.value));
  }
  return propertylist::Dictionary::fromDistinct(std::move(entries));
}

/// The file as it was read, without the values that the next save removes.
propertylist::Value Plist::fileWithoutRemoved() const {
  propertylist::Value file = dictionary->value();
  for (const auto& path : removedValues) removeAt(file, path);
  return file;
}

propertylist::Dictionary Plist::encodeAll() const {
  const auto read = asRead();
  if (!read) return encode();
  const propertylist::Value whole = fileWithoutRemoved();
  const auto& file = *whole.as<propertylist::Dictionary>();
  propertylist::Dictionary merged = mergeIntoFile(file, read->encodeWithUnknown(), encodeWithUnknown());
  // `mergeIntoFile` assumes that the elements of an array keep their order, which intervals don't, so they are merged
  // by their origins.
  const propertylist::Value* const intervals = file.find(calendarKey);
  if (!intervals || !read->startCalendarInterval) return merged;
  auto merge =
      mergeIntervals(*intervals, *read->startCalendarInterval, startCalendarInterval.value_or(StartCalendarInterval()));
  const auto* list = merge.as<propertylist::Array>();
  if (!list || !list->empty()) merged.set(calendarKey, std::move(merge));
  return merged;
}

std::vector<OpaqueValue> Plist::opaqueValues() const {
  const auto read = asRead();
  if (!read) return {};
  const propertylist::Value whole = fileWithoutRemoved();
  const auto* const intervals = whole.as<propertylist::Dictionary>()->find(calendarKey);
  const auto arranged = [intervals](const Plist& record, Absent absent) {
    propertylist::Dictionary values = record.encodeWithUnknown();
    const auto& calendar = record.startCalendarInterval;
    if (intervals && calendar) values.set(calendarKey, arrangedLike(*intervals, *calendar, absent));
    return propertylist::Value(std::move(values));
  };
  auto values = jobfile::opaqueValues(whole, arranged(*read, Absent::IsEmpty));
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
