#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/editor/ValueTexts.h"
#include "core/jobfile/Plist.h"
#include "core/schedule/RuleEditor.h"
#include "core/session/Editing.h"

/// The rules of the section about when a job runs that the table of fields can't express.
namespace mirvel::WhenRules {

/// A condition of `KeepAlive` for display: a check box with its state or, if `state` is null, a line for each path or
/// job.
struct Condition {
  std::string key;
  std::optional<bool> state = {};
  std::vector<std::string> lines = {};

  bool operator==(const Condition&) const = default;
};

/// The read-only view of a record. A box whose state is null isn't shown.
struct Display {
  std::optional<bool> runAtLoad = {};
  std::optional<bool> keepAlive = {};
  std::vector<Condition> conditions = {};
  std::optional<bool> startOnMount = {};
  bool isScheduled = false;

  bool operator==(const Display&) const = default;
};

/// Paths of conditions are shown as `texts` does. The result doesn't refer to the arguments.
Display display(const jobfile::Plist& plist, const ValueTexts& texts);

/// Writes the rows of the rule editor to the record; without rows the schedule is removed. If a row is invalid, stores
/// all rows as unfinished, leaves the record unchanged and returns false.
bool rulesChanged(jobfile::Plist& plist, Unfinished& unfinished, const Scheduled::RuleEditor& rules);
/// Whether the rows can be saved and are the record's schedule, if not in the order in which it would be loaded: rows
/// as the user has entered them needn't be replaced then.
bool standFor(const Scheduled::RuleEditor& rules, const jobfile::Plist& plist);
/// Removes the schedule and unfinished rows.
void removeSchedule(jobfile::Plist& plist, Unfinished& unfinished);
/// Whether only numbers or times differ, so that for undo the change continues the previous one.
bool isTyping(const std::vector<Scheduled::RuleRow>& before, const std::vector<Scheduled::RuleRow>& after);

}  // namespace mirvel::WhenRules
