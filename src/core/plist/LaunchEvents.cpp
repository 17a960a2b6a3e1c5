#include "core/plist/LaunchEvents.h"

#include "core/plist/Codec.h"

namespace mirvel::launchd {

void decode(const plist::Value& value, const Place& place, LaunchEvents& result) {
  for (const auto& [name, stream] : dictionaryIn(value, place)) {
    (void)decodeOrDrop(stream, place.key(name), result.dictionaries, name);  // a bad stream is dropped on purpose
  }
}

void decode(const plist::Value& value, const Place& place, LaunchEvents::SubDictionary& result) {
  for (const auto& [name, event] : dictionaryIn(value, place)) {
    (void)decodeOrDrop(event, place.key(name), result.subDictionaries, name);  // likewise
  }
}

std::optional<plist::Value> encode(const LaunchEvents& events) {
  return encode(events.dictionaries);
}

std::optional<plist::Value> encode(const LaunchEvents::SubDictionary& stream) {
  return encode(stream.subDictionaries);
}

}  // namespace mirvel::launchd
