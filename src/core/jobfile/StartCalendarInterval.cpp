#include "core/jobfile/StartCalendarInterval.h"

#include "core/jobfile/Keys.h"

namespace mirvel::jobfile {

namespace {

using Interval = StartCalendarInterval::Interval;
using K = Interval::CodingKeys;

constexpr auto keys = std::tuple{
    Key{K::minute, "Minute", &Interval::minute}, Key{K::hour, "Hour", &Interval::hour},
    Key{K::day, "Day", &Interval::day},          Key{K::weekday, "Weekday", &Interval::weekday},
    Key{K::month, "Month", &Interval::month},
};
static_assert(isComplete(keys, K::month));
constexpr auto keyTexts = textsOf(keys);

void decodeElements(const propertylist::Node& node, const Place& place, std::vector<Interval>& result) {
  const auto elements = elementsOf(node, place);
  result.reserve(elements.size());
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (place.isTolerant() && elements[i].type() != propertylist::Type::Dictionary) continue;  // the file keeps it
    Interval& interval = result.emplace_back();
    decode(elements[i], place.index(i), interval);
    interval.origin = i;
  }
}

void decodeForms(const propertylist::Node& node, const Place& place, StartCalendarInterval& result) {
  if (node.type() == propertylist::Type::Array) {
    decodeElements(node, place, result.intervals);
  } else if (node.type() == propertylist::Type::Dictionary) {
    result.singleValue = true;
    decode(node, place, result.intervals.emplace_back());
    result.intervals.front().origin = 0;
  } else {
    failWrongType(node, place, "a dictionary or an array of dictionaries");
  }
}

}  // namespace

std::string_view Interval::text(CodingKeys key) {
  return keyTexts[static_cast<std::size_t>(key)];
}

std::optional<K> Interval::codingKey(std::string_view text) {
  return codingKeyIn<CodingKeys>(keyTexts, text);
}

void decode(const propertylist::Node& node, const Place& place, Interval& result) {
  decodeKeys(node, place, keys, result);
}

void decode(const propertylist::Node& node, const Place& place, StartCalendarInterval& result) {
  try {
    decodeForms(node, place, result);
  } catch (DecodingFailure& failure) {
    failNoForm("Start calendar interval type error: ", std::move(failure));
  }
}

std::optional<propertylist::Value> encode(const Interval& interval) {
  return propertylist::Value(encodeKeys(interval, keys));
}

std::optional<propertylist::Value> encode(const StartCalendarInterval& value) {
  if (value.intervals.empty()) return std::nullopt;
  if (value.singleValue && value.intervals.size() == 1) return encode(value.intervals.front());
  return encode(value.intervals);
}

}  // namespace mirvel::jobfile
