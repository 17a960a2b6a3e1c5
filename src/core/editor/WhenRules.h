#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/editor/ValueTexts.h"
#include "core/jobfile/Plist.h"
#include "core/schedule/RuleEditor.h"
#include "core/session/Editing.h"

/// The rules of the section about when a job runs, beyond its fields.
namespace mirvel::WhenRules {

/// A condition under which a job is kept alive: a box, or one line for each path or job.
struct Condition {
  std::string key;
  std::optional<bool> state = {};
  std::vector<std::string> lines = {};

  bool operator==(const Condition&) const = default;
};

/// The read-only view of a record. An absent box isn't shown.
struct Display {
  std::optional<bool> runAtLoad = {};
  std::optional<bool> keepAlive = {};
  std::vector<Condition> conditions = {};
  std::optional<bool> startOnMount = {};
  bool isScheduled = false;

  bool operator==(const Display&) const = default;
};

Display display(const jobfile::Plist& plist, const ValueTexts& texts);

/// Writes the rows of the rule editor; an empty editor removes the schedule. Returns false if the rows can't be saved:
/// they become unfinished, and the record keeps its rules.
bool rulesChanged(jobfile::Plist& plist, Unfinished& unfinished, const Scheduled::RuleEditor& rules);
void removeSchedule(jobfile::Plist& plist, Unfinished& unfinished);
/// Whether a change of the rows continues typing: the same rows with the same choices.
bool isTyping(const std::vector<Scheduled::RuleRow>& before, const std::vector<Scheduled::RuleRow>& after);

}  // namespace mirvel::WhenRules
