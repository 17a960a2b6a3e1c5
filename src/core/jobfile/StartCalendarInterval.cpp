#include "core/jobfile/StartCalendarInterval.h"

#include "core/jobfile/Keys.h"

namespace mirvel::jobfile {

namespace {

using Interval = StartCalendarInterval::Interval;

constexpr auto intervalKeys = [] {
  using K = Interval::CodingKeys;
  return std::tuple{
      Key{K::Minute, "Minute", &Interval::minute}, Key{K::Hour, "Hour", &Interval::hour},
      Key{K::Day, "Day", &Interval::day},          Key{K::Weekday, "Weekday", &Interval::weekday},
      Key{K::Month, "Month", &Interval::month},
  };
}();
static_assert(isComplete(intervalKeys, Interval::CodingKeys::Month));
constexpr auto intervalKeyTexts = textsOf(intervalKeys);

void decodeElements(const propertylist::Node& node, const Place& place, std::vector<Interval>& result) {
  const auto elements = elementsOf(node, place);
  result.reserve(elements.size());
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (place.isTolerant() && elements[i].type() != propertylist::Type::Dictionary) continue;  // stays in the file
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
  return intervalKeyTexts[static_cast<std::size_t>(key)];
}

std::optional<Interval::CodingKeys> Interval::codingKey(std::string_view text) {
  return codingKeyIn<CodingKeys>(intervalKeyTexts, text);
}

void decode(const propertylist::Node& node, const Place& place, Interval& result) {
  decodeKeys(node, place, intervalKeys, result);
}

void decode(const propertylist::Node& node, const Place& place, StartCalendarInterval& result) {
  try {
    decodeForms(node, place, result);
  } catch (DecodingFailure& failure) {
    failNoForm("Start calendar interval type error: ", std::move(failure));
  }
}

std::optional<propertylist::Value> encode(const Interval& interval) {
  return propertylist::Value(encodeKeys(interval, intervalKeys));
}

std::optional<propertylist::Value> encode(const StartCalendarInterval& value) {
  if (value.intervals.empty()) return std::nullopt;
  if (value.singleValue && value.intervals.size() == 1) return encode(value.intervals.front());
  return encode(value.intervals);
}

}  // namespace mirvel::jobfile
