#include "core/jobfile/ResourceLimits.h"

#include "core/jobfile/Keys.h"
#include "core/text/Digits.h"
#include "core/text/Octal.h"

namespace mirvel::jobfile {

namespace {

constexpr auto limitKeys = [] {
  using K = ResourceLimits::CodingKeys;
  return std::tuple{
      Key{K::Core, "Core", &ResourceLimits::core},
      Key{K::Cpu, "CPU", &ResourceLimits::cpu},
      Key{K::Data, "Data", &ResourceLimits::data},
      Key{K::FileSize, "FileSize", &ResourceLimits::fileSize},
      Key{K::MemoryLock, "MemoryLock", &ResourceLimits::memoryLock},
      Key{K::NumberOfFiles, "NumberOfFiles", &ResourceLimits::numberOfFiles},
      Key{K::NumberOfProcesses, "NumberOfProcesses", &ResourceLimits::numberOfProcesses},
      Key{K::ResidentSetSize, "ResidentSetSize", &ResourceLimits::residentSetSize},
      Key{K::Stack, "Stack", &ResourceLimits::stack},
  };
}();
static_assert(isComplete(limitKeys, ResourceLimits::CodingKeys::Stack));
constexpr auto limitKeyTexts = textsOf(limitKeys);

/// With an optional sign.
std::optional<std::int64_t> decimalNumber(std::string_view text) {
  const bool isNegative = text.starts_with('-');
  if (isNegative || text.starts_with('+')) text.remove_prefix(1);
  const auto number = Decimal::toInt(text);
  return number && isNegative ? -*number : number;
}

}  // namespace

std::string_view ResourceLimits::text(CodingKeys key) {
  return limitKeyTexts[static_cast<std::size_t>(key)];
}

std::span<const ResourceLimits::Member> ResourceLimits::members() {
  static constexpr auto all = std::apply(
      [](const auto&... key) {
        return std::array{Member{key.text, key.field}...};
      },
      limitKeys);
  return all;
}

void decode(const propertylist::Node& node, const Place& place, ResourceLimits& result) {
  decodeKeys(node, place, limitKeys, result);
}

std::optional<propertylist::Value> encode(const ResourceLimits& limits) {
  return propertylist::Value(encodeKeys(limits, limitKeys));
}

void decode(const propertylist::Node& node, const Place&, Umask& result) {
  if (const auto text = node.string()) {
    result.int_ = text->starts_with('0') ? Octal::toInt(*text) : decimalNumber(*text);
  } else {
    result.int_ = wholeNumber(node, WholeReals::Accepted);
  }
}

std::optional<propertylist::Value> encode(const Umask& umask) {
  if (!umask.int_) return std::nullopt;
  return propertylist::Value(*umask.int_);
}

}  // namespace mirvel::jobfile
