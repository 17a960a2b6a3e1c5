#include "core/jobfile/MachServices.h"

#include "core/jobfile/Keys.h"

namespace mirvel::jobfile {

namespace {

using Service = MachServices::SubDictionary;

constexpr auto serviceKeys = [] {
  using K = Service::CodingKeys;
  return std::tuple{
      Key{K::ResetAtClose, "ResetAtClose", &Service::resetAtClose},
      Key{K::HideUntilCheckIn, "HideUntilCheckIn", &Service::hideUntilCheckIn},
      Key{K::DrainMessagesOnCrash, "DrainMessagesOnCrash", &Service::drainMessagesOnCrash},
      Key{K::ExceptionServer, "ExceptionServer", &Service::exceptionServer},
      Key{K::HostSpecialPort, "HostSpecialPort", &Service::hostSpecialPort},
      Key{K::TaskSpecialPort, "TaskSpecialPort", &Service::taskSpecialPort},
  };
}();
static_assert(isComplete(serviceKeys, Service::CodingKeys::TaskSpecialPort));
constexpr auto serviceKeyTexts = textsOf(serviceKeys);

}  // namespace

std::string_view Service::text(CodingKeys key) {
  return serviceKeyTexts[static_cast<std::size_t>(key)];
}

void decode(const propertylist::Node& node, const Place& place, MachServices& result) {
  for (const auto& service : membersOf(node, place)) {
    (void)(storeForm(service, result.bools) || storeForm(service, result.strings) ||
           decodeOrDrop(service, place, result.dictionaries));
  }
}

void decode(const propertylist::Node& node, const Place& place, Service& result) {
  decodeKeys(node, place, serviceKeys, result);
}

std::optional<propertylist::Value> encode(const MachServices& services) {
  propertylist::Dictionary dictionary;
  encodeInto(dictionary, services.bools);
  encodeInto(dictionary, services.strings);
  encodeInto(dictionary, services.dictionaries);
  return propertylist::Value(std::move(dictionary));
}

std::optional<propertylist::Value> encode(const Service& service) {
  return propertylist::Value(encodeKeys(service, serviceKeys));
}

}  // namespace mirvel::jobfile
