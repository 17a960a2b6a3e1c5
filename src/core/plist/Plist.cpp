#include "core/plist/Plist.h"

#include <algorithm>

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

plist::Dictionary Plist::encodeAll() const {
  plist::Dictionary file = encode();
  if (!unknownKeys || !dictionary) return file;
  auto keys = *unknownKeys;
  std::sort(keys.begin(), keys.end(), plist::Dictionary::keyLess);  // each then goes near the end
  for (const std::string& key : keys) {
    if (const plist::Node* value = dictionary->find(key)) file.set(key, plist::valueOf(*value));
  }
  return file;
}

Plist Plist::blankPlist() {
  Plist plist;
  plist.runAtLoad = true;
  return plist;
}

void Plist::applyRules(const std::vector<Scheduled::Row>& rows, const Scheduled::Texts& texts,
                       const Scheduled::NumberText& numbers, const Scheduled::Week& week) {
  auto rules = Scheduled::readRows(rows, texts, numbers, week);
  startInterval = rules.startInterval;
  startCalendarInterval = std::move(rules.startCalendarInterval);
}

}  // namespace mirvel::launchd
