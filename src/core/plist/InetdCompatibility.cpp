#include "core/plist/InetdCompatibility.h"

#include "core/plist/Forms.h"

namespace mirvel::launchd {

void decode(const plist::Node& node, const Place& place, InetdCompatibility& result) {
  for (const auto& setting : membersOf(node, place)) {
    (void)(storeForm(setting, result.bools) || storeForm(setting, result.integers));  // else dropped
  }
}

std::optional<plist::Value> encode(const InetdCompatibility& inetd) {
  plist::Dictionary dictionary;
  encodeInto(dictionary, inetd.bools);
  encodeInto(dictionary, inetd.integers);
  return plist::Value(std::move(dictionary));
}

}  // namespace mirvel::launchd
