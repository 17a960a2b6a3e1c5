#include "core/explain/ScheduleText.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/locale/Dates.h"
#include "core/schedule/UnshownEntries.h"

namespace mirvel::explain {

namespace {

using Interval = jobfile::StartCalendarInterval::Interval;

Interval inAnyMonth(Interval interval) {
  interval.month.reset();
  return interval;
}

/// Whether the month is all that the rule of the interval doesn't show: rules only have a month in combination with a
/// day of the month.
bool isShownExceptItsMonth(const Interval& interval) {
  return interval.month && !interval.day && *interval.month >= 1 && *interval.month <= 12 &&
         Scheduled::isFullyShown(inAnyMonth(interval));
}

/// A rule that only applies in some months.
struct RuleInMonths {
  std::string rule;
  std::vector<std::string> months;
};

class ScheduleSentences {
 public:
  ScheduleSentences(const Localize& localize, TimeForm form)
      : m_localize(localize), m_form(form), m_months(Date::months(localize.locale())) {}

  void addRules(const std::optional<std::int64_t>& startInterval, const jobfile::StartCalendarInterval& calendar) {
    for (const auto& [rule, source] : Scheduled::fileRules(startInterval, calendar)) {
      m_lines.push_back(ruleText(rule, m_localize, m_form));
      std::string unshown = Scheduled::unshownEntries(source.intervals, m_localize);
      if (!unshown.empty()) m_lines.push_back(std::move(unshown));
    }
  }

  /// Merges intervals that differ only in their month into one sentence.
  void addInMonth(const Interval& interval) {
    const std::string text = ruleText(Scheduled::ruleOf(inAnyMonth(interval)), m_localize, m_form);
    auto found = std::find_if(m_rulesInMonths.begin(), m_rulesInMonths.end(),
                              [&](const RuleInMonths& each) { return each.rule == text; });
    if (found == m_rulesInMonths.end()) found = m_rulesInMonths.insert(found, RuleInMonths{.rule = text, .months = {}});
    found->months.push_back(m_months.at(static_cast<std::size_t>(*interval.month - 1)));
  }

  std::vector<std::string> take() && {
    for (const RuleInMonths& each : m_rulesInMonths) {
      m_lines.push_back(m_localize.format("%1$@, only in %2$@", {each.rule, joined(each.months)}));
    }
    return std::move(m_lines);
  }

 private:
  static std::string joined(const std::vector<std::string>& names) {
    std::string result;
    for (const std::string& name : names) result.append(result.empty() ? "" : ", ").append(name);
    return result;
  }

  const Localize& m_localize;
  const TimeForm m_form;
  std::array<std::string, 12> m_months;
  std::vector<std::string> m_lines;
  std::vector<RuleInMonths> m_rulesInMonths;
};

}  // namespace

std::vector<std::string> scheduleText(const jobfile::Plist& plist, const Localize& localize, TimeForm form) {
  jobfile::StartCalendarInterval plain;
  std::vector<Interval> inMonth;
  if (plist.startCalendarInterval) {
    for (const Interval& interval : plist.startCalendarInterval->intervals) {
      (isShownExceptItsMonth(interval) ? inMonth : plain.intervals).push_back(interval);
    }
  }
  ScheduleSentences sentences(localize, form);
  // launchd ignores intervals that aren't positive.
  const bool isRepeated = plist.startInterval && *plist.startInterval > 0;
  sentences.addRules(isRepeated ? plist.startInterval : std::nullopt, plain);
  for (const Interval& interval : inMonth) sentences.addInMonth(interval);
  return std::move(sentences).take();
}

}  // namespace mirvel::explain
