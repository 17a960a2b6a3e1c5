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

/// When launchd starts the job by the calendar: at each moment that fits one of the intervals.
struct StartCalendarInterval {
  /// A moment with wildcards: what is absent fits anything. No range is checked: a file's numbers are kept as read.
  struct Interval {
    enum class CodingKeys { minute, hour, day, weekday, month };
    static std::string_view text(CodingKeys key);
    static std::optional<CodingKeys> codingKey(std::string_view text);

    std::optional<std::int64_t> minute = {};
    std::optional<std::int64_t> hour = {};
    std::optional<std::int64_t> day = {};      ///< of the month
    std::optional<std::int64_t> weekday = {};  ///< 0 and 7 are Sunday
    std::optional<std::int64_t> month = {};    ///< 1 to 12
    /// The index of the element in the file that it was read from, with which a save merges it. None: it is new.
    std::optional<std::size_t> origin = {};

    bool operator==(const Interval&) const = default;
  };

  std::vector<Interval> intervals = {};
  bool singleValue = false;  ///< the file held one dictionary, no array; a single interval is written so again

  bool operator==(const StartCalendarInterval&) const = default;
};

/// Neither a dictionary nor an array of them, or a number of the wrong type: a failure of code `NoForm`. At a tolerant
/// place, elements that aren't dictionaries are left out.
void decode(const propertylist::Node& node, const Place& place, StartCalendarInterval& result);
void decode(const propertylist::Node& node, const Place& place, StartCalendarInterval::Interval& result);
std::optional<propertylist::Value> encode(const StartCalendarInterval& value);
std::optional<propertylist::Value> encode(const StartCalendarInterval::Interval& interval);

}  // namespace mirvel::jobfile
