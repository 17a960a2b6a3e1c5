#include "core/editor/WhenRules.h"

#include "core/app/Program.h"
#include "core/editor/ValueTexts.h"
#include "core/files/URL.h"

namespace mirvel::WhenRules {

namespace {

using jobfile::KeepAlive;
using jobfile::Plist;

std::vector<std::string> lines(const jobfile::StringMap<bool>& entries, const Program& program, bool arePaths) {
  const ValueTexts texts(program.foundation.localize);
  const std::string home = program.foundation.roots.home.native();
  std::vector<std::string> result;
  for (const auto& [key, isOn] : entries) {
    if (key.empty()) continue;
    const std::string shown = arePaths ? localizedDisplayPath(key, home) : key;
    result.push_back(texts.line(shown, texts.boolean(isOn)));
  }
  return result;
}

std::vector<Condition> conditions(const KeepAlive& keepAlive, const Program& program) {
  std::vector<Condition> result;
  const auto addBox = [&result](std::string key, std::optional<bool> state) {
    if (state) result.push_back({.key = std::move(key), .state = state});
  };
  const auto addLines = [&](std::string_view key, const std::optional<jobfile::StringMap<bool>>& entries) {
    const bool arePaths = key == pathStateKey;
    if (entries) result.push_back({.key = std::string(key), .lines = lines(*entries, program, arePaths)});
  };
  addBox("Crashed", keepAlive.crashed);
  addBox("NetworkState", keepAlive.networkState);
  addBox("SuccessfulExit", keepAlive.successfulExit);
  addBox("AfterInitialDemand", keepAlive.afterInitialDemand);
  addLines(pathStateKey, keepAlive.pathState);
  addLines(otherJobEnabledKey, keepAlive.otherJobEnabled);
  return result;
}

/// What is restarted only under conditions.
KeepAlive& conditional(Plist& plist) {
  if (!plist.keepAlive) plist.keepAlive.emplace();
  plist.keepAlive->bool_.reset();
  return *plist.keepAlive;
}

}  // namespace

Display display(const Plist& plist, const Program& program) {
  Display result{.runAtLoad = plist.runAtLoad, .startOnMount = plist.startOnMount, .isScheduled = plist.isScheduled()};
  if (!plist.keepAlive) return result;
  result.keepAlive = plist.keepAlive->bool_.value_or(true);
  if (!plist.keepAlive->bool_) result.conditions = conditions(*plist.keepAlive, program);
  return result;
}

void keepAlive(Plist& plist, Unfinished& unfinished, bool isOn) {
  if (isOn) {
    plist.keepAlive.emplace().bool_ = true;
  } else {
    plist.keepAlive.reset();
    unfinished.tables.clear();
  }
}

void crashed(Plist& plist, BoxClick click) {
  conditional(plist).crashed = click.value();
}

void successfulExit(Plist& plist, BoxClick click) {
  conditional(plist).successfulExit = click.value();
}

GridTable::Source conditionRows(const Plist& plist, const Unfinished& unfinished, std::string_view key) {
  const auto rows = unfinished.tables.find(std::string(key));
  if (rows != unfinished.tables.end()) return rows->second;
  const KeepAlive none;
  const KeepAlive& keepAlive = plist.keepAlive ? *plist.keepAlive : none;
  return (key == pathStateKey ? keepAlive.pathState : keepAlive.otherJobEnabled).value_or(jobfile::StringMap<bool>());
}

void gridTableChanged(Plist& plist, Unfinished& unfinished, std::string_view key,
                      const std::vector<GridTable::Item>& rows, std::optional<bool>& plain) {
  unfinished.tables.erase(std::string(key));
  if (GridTable::repeatedRow(rows)) {
    unfinished.tables.emplace(std::string(key), rows);
    return;
  }
  if (plist.keepAlive && plist.keepAlive->bool_) plain = plist.keepAlive->bool_;
  if (key == pathStateKey) conditional(plist).pathState = GridTable::dictionaryOf(rows);
  if (key == otherJobEnabledKey) conditional(plist).otherJobEnabled = GridTable::dictionaryOf(rows);
  if (plist.keepAlive && *plist.keepAlive == KeepAlive()) plist.keepAlive->bool_ = plain;
}

bool rulesChanged(Plist& plist, Unfinished& unfinished, const Scheduled::RuleEditor& rules) {
  unfinished.rules.clear();
  if (rules.numberOfRows() == 0) {
    removeSchedule(plist, unfinished);
  } else if (rules.isValid()) {
    Scheduled::apply(rules.applied(), plist);
  } else {
    unfinished.rules = rules.content();
  }
  return unfinished.rules.empty();
}

void removeSchedule(Plist& plist, Unfinished& unfinished) {
  plist.startInterval.reset();
  plist.startCalendarInterval.reset();
  unfinished.rules.clear();
}

}  // namespace mirvel::WhenRules
