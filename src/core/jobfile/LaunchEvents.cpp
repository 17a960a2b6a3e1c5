#include "core/jobfile/LaunchEvents.h"

#include "core/jobfile/Codec.h"

namespace mirvel::jobfile {

void decode(const propertylist::Node& node, const Place& place, LaunchEvents& result) {
  for (const auto& stream : membersOf(node, place)) {
    (void)decodeOrDrop(stream, place, result.dictionaries);  // a bad stream is dropped on purpose
  }
}

void decode(const propertylist::Node& node, const Place& place, LaunchEvents::SubDictionary& result) {
  for (const auto& event : membersOf(node, place)) {
    (void)decodeOrDrop(event, place, result.subDictionaries);  // likewise
  }
}

std::optional<propertylist::Value> encode(const LaunchEvents& events) {
  return encode(events.dictionaries);
}

std::optional<propertylist::Value> encode(const LaunchEvents::SubDictionary& stream) {
  return encode(stream.subDictionaries);
}

}  // namespace mirvel::jobfile
