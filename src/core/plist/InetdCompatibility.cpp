#include "core/plist/InetdCompatibility.h"

#include "core/plist/Forms.h"

namespace mirvel::launchd {

void decode(const plist::Value& value, const Place& place, InetdCompatibility& result) {
  for (const auto& [key, setting] : dictionaryIn(value, place)) {
    (void)(storeForm(setting, result.bools, key) || storeForm(setting, result.integers, key));  // else dropped
  }
}

std::optional<plist::Value> encode(const InetdCompatibility& inetd) {
  plist::Dictionary dictionary;
  encodeInto(dictionary, inetd.bools);
  encodeInto(dictionary, inetd.integers);
  return plist::Value(std::move(dictionary));
}

}  // namespace mirvel::launchd
