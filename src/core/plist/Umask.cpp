#include "core/plist/Umask.h"

#include <charconv>
#include <string_view>
#include <system_error>

#include "core/plist/Codec.h"
#include "core/support/Octal.h"

namespace mirvel::launchd {

namespace {

std::optional<std::int64_t> decimal(std::string_view text) {
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stopped, failure] = std::from_chars(text.data(), end, number);
  if (failure != std::errc() || stopped != end) return std::nullopt;
  return number;
}

}  // namespace

void decode(const plist::Node& node, const Place&, Umask& result) {
  if (const auto text = node.string()) {
    result.int_ = text->starts_with('0') ? Octal::toInt(*text) : decimal(*text);
  } else {
    result.int_ = wholeNumber(node, WholeReals::Count);
  }
}

std::optional<plist::Value> encode(const Umask& umask) {
  if (!umask.int_) return std::nullopt;
  return plist::Value(*umask.int_);
}

}  // namespace mirvel::launchd
