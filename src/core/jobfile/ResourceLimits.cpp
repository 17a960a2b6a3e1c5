#include "core/jobfile/ResourceLimits.h"

#include "core/jobfile/Keys.h"

namespace mirvel::jobfile {

namespace {

using K = ResourceLimits::CodingKeys;

constexpr auto keys = std::tuple{
    Key{K::core, "Core", &ResourceLimits::core},
    Key{K::cpu, "CPU", &ResourceLimits::cpu},
    Key{K::data, "Data", &ResourceLimits::data},
    Key{K::fileSize, "FileSize", &ResourceLimits::fileSize},
    Key{K::memoryLock, "MemoryLock", &ResourceLimits::memoryLock},
    Key{K::numberOfFiles, "NumberOfFiles", &ResourceLimits::numberOfFiles},
    Key{K::numberOfProcesses, "NumberOfProcesses", &ResourceLimits::numberOfProcesses},
    Key{K::residentSetSize, "ResidentSetSize", &ResourceLimits::residentSetSize},
    Key{K::stack, "Stack", &ResourceLimits::stack},
};
static_assert(isComplete(keys, K::stack));
constexpr auto keyTexts = textsOf(keys);

}  // namespace

std::string_view ResourceLimits::text(CodingKeys key) {
  return keyTexts[static_cast<std::size_t>(key)];
}

std::optional<K> ResourceLimits::codingKey(std::string_view text) {
  return codingKeyIn<CodingKeys>(keyTexts, text);
}

void decode(const propertylist::Node& node, const Place& place, ResourceLimits& result) {
  decodeKeys(node, place, keys, result);
}

std::optional<propertylist::Value> encode(const ResourceLimits& limits) {
  return propertylist::Value(encodeKeys(limits, keys));
}

}  // namespace mirvel::jobfile
