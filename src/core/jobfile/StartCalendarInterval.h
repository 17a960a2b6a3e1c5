#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "core/propertylist/Node.h"
#include "core/propertylist/Value.h"

namespace mirvel::jobfile {

class Place;

/// The key `StartCalendarInterval`: launchd starts the job at each minute that matches one of the intervals.
struct StartCalendarInterval {
  /// A pattern for points in time, as in crontab(5): absent members match any value, and all present ones must match.
  /// Ranges aren't checked here; numbers such as minute 99 are kept as read, and reported by lint.
  struct Interval {
    enum class CodingKeys { Minute, Hour, Day, Weekday, Month };
    /// The key as in the file.
    static std::string_view text(CodingKeys key);
    /// The key with this text, case-sensitively; none if there is none.
    static std::optional<CodingKeys> codingKey(std::string_view text);

    std::optional<std::int64_t> minute = {};   ///< 0 to 59
    std::optional<std::int64_t> hour = {};     ///< 0 to 23
    std::optional<std::int64_t> day = {};      ///< of the month, 1 to 31
    std::optional<std::int64_t> weekday = {};  ///< 0 to 7; both 0 and 7 are Sunday
    std::optional<std::int64_t> month = {};    ///< 1 to 12
    /// The index of the element in the file from which the interval was read, so that a save can merge the two. None
    /// for new intervals.
    std::optional<std::size_t> origin = {};

    bool operator==(const Interval&) const = default;
  };

  std::vector<Interval> intervals = {};
  bool singleValue = false;  ///< the file has a dictionary instead of an array; kept when there is exactly one interval

  bool operator==(const StartCalendarInterval&) const = default;
};

/// Fails with `NoForm` unless the value is a dictionary or an array of dictionaries in which the known keys are whole
/// numbers; ignores unknown keys. At a tolerant place, skips elements that aren't dictionaries and keys that aren't
/// whole numbers.
void decode(const propertylist::Node& node, const Place& place, StartCalendarInterval& result);
void decode(const propertylist::Node& node, const Place& place, StartCalendarInterval::Interval& result);
/// None if there are no intervals.
std::optional<propertylist::Value> encode(const StartCalendarInterval& value);
/// A dictionary, possibly empty.
std::optional<propertylist::Value> encode(const StartCalendarInterval::Interval& interval);

}  // namespace mirvel::jobfile
