#include "core/plist/LaunchEvents.h"

#include "core/plist/Codec.h"

namespace mirvel::launchd {

void decode(const plist::Node& node, const Place& place, LaunchEvents& result) {
  for (const auto& stream : membersOf(node, place)) {
    (void)decodeOrDrop(stream, place, result.dictionaries);  // a bad stream is dropped on purpose
  }
}

void decode(const plist::Node& node, const Place& place, LaunchEvents::SubDictionary& result) {
  for (const auto& event : membersOf(node, place)) {
    (void)decodeOrDrop(event, place, result.subDictionaries);  // likewise
  }
}

std::optional<plist::Value> encode(const LaunchEvents& events) {
  return encode(events.dictionaries);
}

std::optional<plist::Value> encode(const LaunchEvents::SubDictionary& stream) {
  return encode(stream.subDictionaries);
}

}  // namespace mirvel::launchd
