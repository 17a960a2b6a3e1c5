#include "core/explain/ScheduleText.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/locale/Dates.h"

namespace mirvel::explain {

namespace {

using Interval = jobfile::StartCalendarInterval::Interval;

/// The rules have months together with a day of the month only.
bool hasMonthOfItsOwn(const Interval& interval) {
  return interval.month && !interval.day && *interval.month >= 1 && *interval.month <= 12;
}

/// A rule and the months to which the file binds it.
struct Bound {
  std::string rule;
  std::vector<std::string> months;
};

class Texts {
 public:
  Texts(const Localize& localize, TimeForm form)
      : m_localize(localize), m_form(form), m_months(Date::months(localize.locale())) {}

  void addRules(const std::optional<std::int64_t>& startInterval, const jobfile::StartCalendarInterval& calendar) {
    for (const auto& rule : Scheduled::rules(startInterval, calendar))
      m_lines.push_back(ruleText(rule, m_localize, m_form));
  }

  void addBound(Interval interval) {
    const std::string& month = m_months.at(static_cast<std::size_t>(*interval.month - 1));
    interval.month.reset();
    for (const auto& rule : Scheduled::rules({}, jobfile::StartCalendarInterval{.intervals = {interval}})) {
      const std::string text = ruleText(rule, m_localize, m_form);
      auto found = std::find_if(m_bound.begin(), m_bound.end(), [&](const Bound& bound) { return bound.rule == text; });
      if (found == m_bound.end()) found = m_bound.insert(found, Bound{.rule = text, .months = {}});
      found->months.push_back(month);
    }
  }

  std::vector<std::string> take() && {
    for (const Bound& bound : m_bound) {
      m_lines.push_back(m_localize.format("%1$@, only in %2$@", {bound.rule, joined(bound.months)}));
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
  std::vector<Bound> m_bound;
};

}  // namespace

std::vector<std::string> scheduleText(const jobfile::Plist& plist, const Localize& localize, TimeForm form) {
  jobfile::StartCalendarInterval plain;
  std::vector<Interval> bound;
  if (plist.startCalendarInterval) {
    for (const Interval& interval : plist.startCalendarInterval->intervals) {
      (hasMonthOfItsOwn(interval) ? bound : plain.intervals).push_back(interval);
    }
  }
  Texts texts(localize, form);
  texts.addRules(plist.startInterval, plain);
  for (const Interval& interval : bound) texts.addBound(interval);
  return std::move(texts).take();
}

}  // namespace mirvel::explain
