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

/// The fewest seconds between two runs (launchd.plist(5), ThrottleInterval).
inline constexpr std::int64_t shortestInterval = 10;

struct RuleRow;

/// What the rows of the rule editor stand for in the job file.
struct AppliedRules {
  std::optional<std::int64_t> startInterval = {};  ///< at least 10 seconds
  std::optional<jobfile::StartCalendarInterval> startCalendarInterval = {};

  bool operator==(const AppliedRules&) const = default;
};

/// Reads the rows, top to bottom. A row that can't be read is skipped: one of no kind, with an element missing or of
/// another type, with a text that is no number, or with a repeat interval of more seconds than 64 bits hold. Of the
/// rows with a repeat interval the first counts.
AppliedRules readRows(const std::vector<Row>& rows, const Texts& texts, const NumberText& numbers,
                      const Week& week = Week::current());

/// Likewise, but a row that says what it said at first stands for what it was made from, even if that is more than the
/// row can say; and one that was edited changes nothing of that but what the edit is about. The intervals stand in the
/// order of the file, new ones behind what the row before stands for.
AppliedRules appliedRules(const std::vector<RuleRow>& rows, const Texts& texts, const NumberText& numbers,
                          const Week& week = Week::current());

/// Makes the rules the schedule of a job. A single calendar interval keeps the form that it has in the file.
void apply(AppliedRules rules, jobfile::Plist& record);

}  // namespace mirvel::Scheduled
