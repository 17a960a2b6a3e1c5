#pragma once

#include "core/jobfile/StartCalendarInterval.h"
#include "core/propertylist/Value.h"

/// Calendar intervals beside the elements of the file that they were read from. Neither their number nor their order
/// tells which belong together: intervals are added, removed and put into groups, and some elements aren't read at all.
namespace mirvel::jobfile {

/// What a save writes: each interval of `edited` merged with its origin in `file`, of which `read` was made. Elements
/// that weren't read stay where they are, except for those that `removeAt` has taken out.
propertylist::Value mergeIntervals(const propertylist::Value& file, const StartCalendarInterval& read,
                                   const StartCalendarInterval& edited);

/// What takes the place of an element that none of the intervals was made of.
enum class Absent { IsEmpty, IsAsInFile };

/// The intervals encoded, each in the place of its origin, so that the result compares with `file` element by element.
propertylist::Value arrangedLike(const propertylist::Value& file, const StartCalendarInterval& calendar, Absent absent);

}  // namespace mirvel::jobfile
