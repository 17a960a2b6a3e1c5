#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "core/jobfile/StartCalendarInterval.h"
#include "core/schedule/NumberText.h"
#include "core/schedule/Row.h"
#include "core/schedule/Week.h"

namespace mirvel::jobfile {
class Plist;
}

namespace mirvel::Scheduled {

/// The minimum number of seconds between two runs (the default of ThrottleInterval in launchd.plist(5)).
inline constexpr std::int64_t shortestInterval = 10;

struct RuleRow;

/// The values that the rows of the rule editor write to the job file.
struct AppliedRules {
  std::optional<std::int64_t> startInterval = {};  ///< in seconds, at least 10
  std::optional<jobfile::StartCalendarInterval> startCalendarInterval = {};

  bool operator==(const AppliedRules&) const = default;
};

/// Reads the rows from top to bottom. Skips a row that can't be read: one of no known kind, with an element missing or
/// of the wrong type, with a text that isn't a number, or with a repeat interval whose seconds exceed 64 bits. Of
/// several repeat intervals the first readable one counts; less than 10 seconds become 10. The elements of `texts`
/// identify the choices in the rows.
AppliedRules readRows(const std::vector<Row>& rows, const Texts& texts, const NumberText& numbers,
                      const Week& week = Week::current());

/// The same for rows that were loaded from a job file. An unchanged row keeps its original intervals, even if they
/// contain more than the row shows; an edited row changes only the fields that were edited. Intervals keep the order of
/// the file, and new ones follow those of the row before.
AppliedRules appliedRules(const std::vector<RuleRow>& rows, const Texts& texts, const NumberText& numbers,
                          const Week& week = Week::current());

/// Replaces the schedule of a record. A single calendar interval keeps the form that it has in the file, dictionary or
/// array.
void apply(AppliedRules rules, jobfile::Plist& record);

}  // namespace mirvel::Scheduled
