#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "core/schedule/Scheduled.h"

/// The rules of a job together with what of its file they were made from, which can be more than they tell.
namespace mirvel::Scheduled {

/// What of a job file a rule stands for: one of the two.
struct FileSource {
  std::optional<std::int64_t> startInterval = {};
  std::vector<launchd::StartCalendarInterval::Interval> intervals = {};  ///< several of a group of days

  bool operator==(const FileSource&) const = default;
};

struct FileRule {
  ScheduledType rule;
  FileSource source = {};
};

/// As `rules`, each with its source.
std::vector<FileRule> fileRules(std::optional<std::int64_t> startInterval,
                                const std::optional<launchd::StartCalendarInterval>& startCalendarInterval,
                                const Week& week = Week::current());

/// The interval that says no more than its rule does.
launchd::StartCalendarInterval::Interval shownInterval(const launchd::StartCalendarInterval::Interval& interval);

/// The rule that shows the most of an interval.
ScheduledType ruleOf(const launchd::StartCalendarInterval::Interval& interval);

/// Whether its rule tells when launchd runs it.
bool isTold(const launchd::StartCalendarInterval::Interval& interval);

}  // namespace mirvel::Scheduled
