#include "core/jobfile/Umask.h"

#include <charconv>
#include <string_view>
#include <system_error>

#include "core/jobfile/Codec.h"
#include "core/text/Digits.h"

namespace mirvel::jobfile {

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

void decode(const propertylist::Node& node, const Place&, Umask& result) {
  if (const auto text = node.string()) {
    result.int_ = text->starts_with('0') ? Octal::toInt(*text) : decimal(*text);
  } else {
    result.int_ = wholeNumber(node, WholeReals::Count);
  }
}

std::optional<propertylist::Value> encode(const Umask& umask) {
  if (!umask.int_) return std::nullopt;
  return propertylist::Value(*umask.int_);
}

}  // namespace mirvel::jobfile
