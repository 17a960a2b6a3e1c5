#pragma once

#include "core/jobfile/StartCalendarInterval.h"
#include "core/propertylist/Value.h"

namespace mirvel::jobfile {

/// Returns the content to write to a file: a three-way merge. `file` is the content as it was read, `read` the encoding
/// of the record that was decoded from it, and `edited` the encoding of the record as it is now. Since a record can't
/// represent everything, `file` can contain more than `read`.
///
/// - Values that are equal in `read` and `edited` are taken from `file`, with their type: 10.0 stays 10.0.
/// - Dictionaries that differ are merged entry by entry. Entries that exist in `file` only are kept.
/// - Arrays that differ are merged element by element. Elements were added or removed between the longest common prefix
///   and suffix of `read` and `edited`. A single value counts as an array of one.
/// - Anything else is taken from `edited`.
///
///     file {x: 1, Odd: 2}, read {x: 1}, edited {x: 5}  =>  {x: 5, Odd: 2}
propertylist::Dictionary mergeIntoFile(const propertylist::Dictionary& file, const propertylist::Dictionary& read,
                                       const propertylist::Dictionary& edited);

// Calendar intervals are merged by their origin instead: the rule editor groups and sorts them, and elements that
// aren't dictionaries aren't read, so neither position nor number says which interval belongs to which element.

/// Returns the value to write for the intervals: those of `edited` in their order, each merged with the element of
/// `file` at its origin. `read` is what was decoded from `file`. Elements that weren't read are kept in front of the
/// next interval that comes from a later element, unless `removeAt` has removed them.
propertylist::Value mergeIntervals(const propertylist::Value& file, const StartCalendarInterval& read,
                                   const StartCalendarInterval& edited);

/// How `arrangedLike` fills the positions of elements that no interval refers to: with an empty dictionary, or with the
/// element itself.
enum class Absent { IsEmpty, IsAsInFile };

/// Encodes the intervals in the order of their origins, so that the result can be compared with `file` index by index.
/// Intervals without origin are left out.
propertylist::Value arrangedLike(const propertylist::Value& file, const StartCalendarInterval& calendar, Absent absent);

}  // namespace mirvel::jobfile
