#include "core/jobfile/InetdCompatibility.h"

#include "core/jobfile/Forms.h"

namespace mirvel::jobfile {

void decode(const propertylist::Node& node, const Place& place, InetdCompatibility& result) {
  for (const auto& setting : membersOf(node, place)) {
    (void)(storeForm(setting, result.bools) || storeForm(setting, result.integers));  // else dropped
  }
}

std::optional<propertylist::Value> encode(const InetdCompatibility& inetd) {
  propertylist::Dictionary dictionary;
  encodeInto(dictionary, inetd.bools);
  encodeInto(dictionary, inetd.integers);
  return propertylist::Value(std::move(dictionary));
}

}  // namespace mirvel::jobfile
