#include "core/editor/WhenRules.h"

#include <algorithm>

#include "core/editor/ValueTexts.h"
#include "core/files/URL.h"

namespace mirvel::WhenRules {

namespace {

using jobfile::KeepAlive;
using jobfile::Plist;

enum class ConditionSubject { Paths, Jobs };

std::vector<std::string> lines(const jobfile::StringMap<bool>& entries, ConditionSubject subject,
                               const ValueTexts& texts) {
  std::vector<std::string> result;
  for (const auto& [key, isOn] : entries) {
    if (key.empty()) continue;
    result.push_back(texts.line(subject == ConditionSubject::Paths ? texts.path(key) : key, texts.boolean(isOn)));
  }
  return result;
}

std::vector<Condition> conditions(const KeepAlive& keepAlive, const ValueTexts& texts) {
  using K = KeepAlive::CodingKeys;
  std::vector<Condition> result;
  const auto addBox = [&result](K key, std::optional<bool> state) {
    if (state) result.push_back({.key = std::string(KeepAlive::text(key)), .state = state});
  };
  const auto addLines = [&](K key, const std::optional<jobfile::StringMap<bool>>& entries, ConditionSubject subject) {
    if (entries) result.push_back({.key = std::string(KeepAlive::text(key)), .lines = lines(*entries, subject, texts)});
  };
  addBox(K::Crashed, keepAlive.crashed);
  addBox(K::NetworkState, keepAlive.networkState);
  addBox(K::SuccessfulExit, keepAlive.successfulExit);
  addBox(K::AfterInitialDemand, keepAlive.afterInitialDemand);
  addLines(K::PathState, keepAlive.pathState, ConditionSubject::Paths);
  addLines(K::OtherJobEnabled, keepAlive.otherJobEnabled, ConditionSubject::Jobs);
  return result;
}

}  // namespace

Display display(const Plist& plist, const ValueTexts& texts) {
  Display result{.runAtLoad = plist.runAtLoad, .startOnMount = plist.startOnMount, .isScheduled = plist.isScheduled()};
  if (!plist.keepAlive) return result;
  result.keepAlive = plist.isAlwaysKeptAlive() || !plist.keepAlive->bool_;
  if (!plist.keepAlive->bool_) result.conditions = conditions(*plist.keepAlive, texts);
  return result;
}

bool rulesChanged(Plist& plist, Unfinished& unfinished, const Scheduled::RuleEditor& rules) {
  unfinished.rules.clear();
  if (rules.numberOfRows() == 0) {
    removeSchedule(plist, unfinished);
  } else if (rules.isValid()) {
    Scheduled::apply(rules.applied(), plist);
  } else {
    unfinished.rules = rules.content();  // the record keeps its last valid schedule
  }
  return unfinished.rules.empty();
}

bool standFor(const Scheduled::RuleEditor& rules, const Plist& plist) {
  using Intervals = std::vector<jobfile::StartCalendarInterval::Interval>;
  const auto intervals = [](const auto& calendar) { return calendar ? calendar->intervals : Intervals(); };
  const auto applied = rules.applied();
  return rules.isValid() && applied.startInterval == plist.startInterval &&
         intervals(applied.startCalendarInterval) == intervals(plist.startCalendarInterval);
}

void removeSchedule(Plist& plist, Unfinished& unfinished) {
  plist.startInterval.reset();
  plist.startCalendarInterval.reset();
  unfinished.rules.clear();
}

bool isTyping(const std::vector<Scheduled::RuleRow>& before, const std::vector<Scheduled::RuleRow>& after) {
  return std::equal(before.begin(), before.end(), after.begin(), after.end(),
                    [](const auto& a, const auto& b) { return a.criteria == b.criteria; });
}

}  // namespace mirvel::WhenRules
