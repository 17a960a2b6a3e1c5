#include "core/jobfile/MachServices.h"

#include "core/jobfile/Forms.h"
#include "core/jobfile/Keys.h"

namespace mirvel::jobfile {

namespace {

using SubDictionary = MachServices::SubDictionary;
using K = SubDictionary::CodingKeys;

constexpr auto keys = std::tuple{
    Key{K::resetAtClose, "ResetAtClose", &SubDictionary::resetAtClose},
    Key{K::hideUntilCheckIn, "HideUntilCheckIn", &SubDictionary::hideUntilCheckIn},
    Key{K::drainMessagesOnCrash, "DrainMessagesOnCrash", &SubDictionary::drainMessagesOnCrash},
    Key{K::exceptionServer, "ExceptionServer", &SubDictionary::exceptionServer},
    Key{K::hostSpecialPort, "HostSpecialPort", &SubDictionary::hostSpecialPort},
    Key{K::taskSpecialPort, "TaskSpecialPort", &SubDictionary::taskSpecialPort},
};
static_assert(isComplete(keys, K::taskSpecialPort));
constexpr auto keyTexts = textsOf(keys);

}  // namespace

std::string_view SubDictionary::text(CodingKeys key) {
  return keyTexts[static_cast<std::size_t>(key)];
}

std::optional<K> SubDictionary::codingKey(std::string_view text) {
  return codingKeyIn<CodingKeys>(keyTexts, text);
}

void decode(const propertylist::Node& node, const Place& place, MachServices& result) {
  for (const auto& service : membersOf(node, place)) {
    (void)(storeForm(service, result.bools) || storeForm(service, result.strings) ||
           decodeOrDrop(service, place, result.dictionaries));  // else dropped
  }
}

void decode(const propertylist::Node& node, const Place& place, SubDictionary& result) {
  decodeKeys(node, place, keys, result);
}

std::optional<propertylist::Value> encode(const MachServices& services) {
  propertylist::Dictionary dictionary;
  encodeInto(dictionary, services.bools);
  encodeInto(dictionary, services.strings);
  encodeInto(dictionary, services.dictionaries);
  return propertylist::Value(std::move(dictionary));
}

std::optional<propertylist::Value> encode(const SubDictionary& service) {
  return propertylist::Value(encodeKeys(service, keys));
}

}  // namespace mirvel::jobfile
