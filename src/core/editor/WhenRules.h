#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/editor/BoxClick.h"
#include "core/editor/GridTable.h"
#include "core/jobfile/Plist.h"
#include "core/schedule/RuleEditor.h"
#include "core/session/Unfinished.h"

namespace mirvel {

class Program;

/// What the section about when a job runs shows, and what its controls make of the record.
namespace WhenRules {

/// The keys of the tables of conditions.
inline constexpr std::string_view pathStateKey = "PathState";
inline constexpr std::string_view otherJobEnabledKey = "OtherJobEnabled";

/// A condition under which a job is kept alive: a box, or one line for each path or job.
struct Condition {
  std::string key;
  std::optional<bool> state = {};
  std::vector<std::string> lines = {};

  bool operator==(const Condition&) const = default;
};

/// What is shown of a record that is only looked at. An absent box isn't there.
struct Display {
  std::optional<bool> runAtLoad = {};
  std::optional<bool> keepAlive = {};
  std::vector<Condition> conditions = {};
  std::optional<bool> startOnMount = {};
  bool isScheduled = false;

  bool operator==(const Display&) const = default;
};

Display display(const jobfile::Plist& plist, const Program& program);

/// The box that keeps a job alive: off takes the key away, whatever it held.
void keepAlive(jobfile::Plist& plist, Unfinished& unfinished, bool isOn);
// A condition takes the place of the plain form.
void crashed(jobfile::Plist& plist, BoxClick click);
void successfulExit(jobfile::Plist& plist, BoxClick click);
/// What the table of conditions with that key is filled from.
GridTable::Source conditionRows(const jobfile::Plist& plist, const Unfinished& unfinished, std::string_view key);
/// Takes over the rows of the table with that key; nothing for any other. Rows that can't all be saved are unfinished,
/// and the record keeps those it has. `plain` keeps the plain form while conditions stand in its place: those that come
/// and go again leave the key as it was.
void gridTableChanged(jobfile::Plist& plist, Unfinished& unfinished, std::string_view key,
                      const std::vector<GridTable::Item>& rows, std::optional<bool>& plain);
/// Takes over the rows of the rule editor; without one there is no schedule. False: they can't be saved as they stand
/// and are unfinished, and the record keeps its rules.
bool rulesChanged(jobfile::Plist& plist, Unfinished& unfinished, const Scheduled::RuleEditor& rules);
/// The job has no schedule any more.
void removeSchedule(jobfile::Plist& plist, Unfinished& unfinished);

}  // namespace WhenRules

}  // namespace mirvel
