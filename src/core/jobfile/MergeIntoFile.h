#pragma once

#include "core/jobfile/StartCalendarInterval.h"
#include "core/propertylist/Value.h"

namespace mirvel::jobfile {

/// The content of a file after an edit: a three-way merge. `read` is what the record made of `file`, and `edited` what
/// it makes of it now; either may hold less than the file does, where the record can't represent a value.
///
/// What is the same in `read` and `edited` stays as the file has it. A dictionary that differs is merged entry by
/// entry, so that entries which the record doesn't know survive beside those that were edited; a list is merged element
/// by element, around those that were added or removed. A value alone and a list of it are taken for each other.
/// Anything else is taken from `edited`.
propertylist::Dictionary mergeIntoFile(const propertylist::Dictionary& file, const propertylist::Dictionary& read,
                                       const propertylist::Dictionary& edited);

// Calendar intervals are merged with the elements of the file that they were read from. Neither their number nor their
// order tells which belong together: intervals are added, removed and put into groups, and some elements aren't read.

/// What a save writes: each interval of `edited` merged with its origin in `file`, of which `read` was made. Elements
/// that weren't read stay where they are, except for those that `removeAt` has taken out.
propertylist::Value mergeIntervals(const propertylist::Value& file, const StartCalendarInterval& read,
                                   const StartCalendarInterval& edited);

/// What takes the place of an element that none of the intervals was made of.
enum class Absent { IsEmpty, IsAsInFile };

/// The intervals encoded, each in the place of its origin, so that the result compares with `file` element by element.
propertylist::Value arrangedLike(const propertylist::Value& file, const StartCalendarInterval& calendar, Absent absent);

}  // namespace mirvel::jobfile
