#include "core/plist/Plist.h"

#include "core/plist/MergeIntoFile.h"
#include "core/plist/PlistKeys.h"

namespace mirvel::launchd {

namespace {

constexpr auto keyTexts = textsOf(plistKeys);

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

plist::Dictionary Plist::encodeAll() const {
  const auto read = asRead();
  if (!read) return encode();
  plist::Value file = dictionary->value();
  for (const auto& path : removedValues) removeAt(file, path);
  return mergeIntoFile(*file.as<plist::Dictionary>(), read->encodeWithUnknown(), encodeWithUnknown());
}

std::vector<OpaqueValue> Plist::opaqueValues() const {
  const auto read = asRead();
  if (!read) return {};
  plist::Value file = dictionary->value();
  for (const auto& path : removedValues) removeAt(file, path);
  auto values = launchd::opaqueValues(file, read->encodeWithUnknown());
  const plist::Value edited = encodeWithUnknown();
  std::erase_if(values, [&edited](const OpaqueValue& value) { return holdsAt(edited, value.path); });
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

void Plist::applyRules(const std::vector<Scheduled::Row>& rows, const Scheduled::Texts& texts,
                       const Scheduled::NumberText& numbers, const Scheduled::Week& week) {
  auto rules = Scheduled::readRows(rows, texts, numbers, week);
  const bool wasSingle = startCalendarInterval && startCalendarInterval->singleValue;
  startInterval = rules.startInterval;
  startCalendarInterval = std::move(rules.startCalendarInterval);
  if (startCalendarInterval) startCalendarInterval->singleValue = wasSingle;
}

}  // namespace mirvel::launchd
