#include "core/messages/DateKey.h"

#include <cmath>
#include <cstdint>

#include "core/text/Digits.h"

namespace mirvel::messages {

namespace {

constexpr std::int64_t perSecond = 1'000'000;
constexpr std::size_t fractionDigits = 6;
constexpr double farthest = 1e12;  // beyond it, microseconds don't fit into 64 bits

}  // namespace

std::string dateKey(double seconds) {
  const std::int64_t all = std::llround(seconds * static_cast<double>(perSecond));
  const std::int64_t size = all < 0 ? -all : all;
  std::string text = (all < 0 ? "-" : "") + std::to_string(size / perSecond);
  if (size % perSecond == 0) return text;
  std::string fraction = std::to_string(size % perSecond);
  fraction.insert(0, fractionDigits - fraction.size(), '0');
  fraction.erase(fraction.find_last_not_of('0') + 1);
  return text + '.' + fraction;
}

std::optional<double> dateOfKey(std::string_view key) {
  const bool isNegative = key.starts_with('-');
  if (isNegative) key.remove_prefix(1);
  const std::size_t point = key.find('.');
  const auto whole = Decimal::toInt(key.substr(0, point));
  if (!whole) return std::nullopt;
  double seconds = static_cast<double>(*whole);
  if (point != std::string_view::npos) {
    const std::string_view fraction = key.substr(point + 1);
    const auto part = Decimal::toInt(fraction);
    if (!part) return std::nullopt;
    seconds += static_cast<double>(*part) / std::pow(10.0, static_cast<double>(fraction.size()));
  }
  if (seconds > farthest) return std::nullopt;
  return isNegative ? -seconds : seconds;
}

}  // namespace mirvel::messages
