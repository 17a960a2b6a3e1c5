#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "core/process/SystemProcessRunner.h"
#include "core/schedule/ComingRuns.h"
#include "core/schedule/UtcText.h"

namespace mirvel {
namespace {

using namespace std::chrono;
using Interval = jobfile::StartCalendarInterval::Interval;
using Texts = std::vector<std::string>;

constexpr const char* tool = "/usr/bin/systemd-analyze";
constexpr int iterations = 4;

struct Rule {
  Interval interval;
  std::string zone;
};

class Rules {
 public:
  /// A random rule of one of the forms that the timeline supports. Days, months and weekdays may be out of range; hours
  /// and minutes aren't, since a rule that never triggers has no expression.
  Rule next() {
    Rule rule{.interval = {}, .zone = m_zones.at(number(0, m_zones.size() - 1))};
    const auto form = number(0, 5);
    if (form == 0) rule.interval.day = signedNumber(-2, 34);
    if (form == 1) rule.interval = {.day = signedNumber(-2, 34), .month = signedNumber(-1, 14)};
    if (form == 2) rule.interval.weekday = signedNumber(-2, 9);
    if (form == 3) rule.interval = {.day = signedNumber(1, 31), .weekday = signedNumber(0, 6)};
    if (form == 4) rule.interval = {.hour = signedNumber(0, 23), .month = signedNumber(1, 12)};
    if (form == 5) rule.interval.minute = signedNumber(0, 59);
    if (number(0, 1) == 0) rule.interval.minute = signedNumber(0, 59);
    if (number(0, 2) == 0) rule.interval.hour = signedNumber(0, 23);
    return rule;
  }

 private:
  std::size_t number(std::size_t least, std::size_t greatest) { return least + m_random() % (greatest - least + 1); }
  std::int64_t signedNumber(int least, int greatest) {
    return least + static_cast<std::int64_t>(m_random() % static_cast<unsigned>(greatest - least + 1));
  }

  std::mt19937 m_random{20261121};
  // No zones whose future transitions are only predicted, since the tool may use other data than ICU.
  const std::array<std::string, 5> m_zones{"UTC", "Europe/Berlin", "America/New_York", "Australia/Lord_Howe",
                                           "Asia/Kolkata"};
};

std::string twoDigits(std::int64_t number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

/// The expression with the meaning that the timeline gives to a rule. It isn't a literal translation if
///   - Hour or Minute is missing: it is 0, except that a lone Minute matches every hour;
///   - Weekday is combined with Day: Weekday is ignored, whereas an expression would require both;
///   - Month has no Day: it is ignored;
///   - Day or Month is out of range: it is clamped, and a Weekday out of range is Sunday.
std::string expression(const Rule& rule) {
  constexpr const char* weekdays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  const Interval& interval = rule.interval;
  const auto within = [](std::int64_t number, std::int64_t greatest) {
    return twoDigits(number < 1 ? 1 : number > greatest ? greatest : number);
  };
  std::string weekday, month = "*", day = "*", hour = twoDigits(interval.hour.value_or(0));
  if (interval.day) {
    day = within(*interval.day, 31);
    if (interval.month) month = within(*interval.month, 12);
  } else if (interval.weekday) {
    weekday = std::string(weekdays[*interval.weekday < 0 || *interval.weekday > 6 ? 0 : *interval.weekday]) + ' ';
  } else if (!interval.hour) {
    hour = "*";
  }
  const std::string date = weekday + "*-" + month + '-' + day;
  return date + ' ' + hour + ':' + twoDigits(interval.minute.value_or(0)) + ":00 " + rule.zone;
}

/// The runs of each expression. The first is in a line such as "    Next elapse: Sun 2026-10-25 00:30:00 UTC".
std::vector<Texts> runsInOutput(const std::string& output) {
  std::vector<Texts> result;
  std::istringstream lines(output);
  for (std::string line; std::getline(lines, line);) {
    if (line.find("Normalized form: ") != std::string::npos) result.emplace_back();
    const bool hasRun = line.find("Next elapse: ") != std::string::npos || line.find("Iter. #") != std::string::npos;
    const auto date = line.find(" 20");
    if (hasRun && date != std::string::npos && !result.empty()) result.back().push_back(line.substr(date + 1));
  }
  return result;
}

Texts ours(const Rule& rule, const ZoneStretches& zone, sys_seconds after) {
  ComingRuns runs(CalendarRule::asShown(rule.interval), zone, after, zone.end());
  Texts result;
  while (result.size() < iterations) {
    const auto run = runs.next();
    if (!run) break;
    result.push_back(utcText(*run));
  }
  return result;
}

void compare(Rules& generator, std::size_t count, sys_seconds base) {
  std::vector<std::string> arguments{"calendar", "--iterations=" + std::to_string(iterations),
                                     "--base-time=" + utcText(base)};
  std::vector<Rule> rules(count);
  for (Rule& rule : rules) {
    rule = generator.next();
    arguments.push_back(expression(rule));
  }
  SystemProcessRunner processes{{{"TZ", "UTC"}, {"LC_ALL", "C"}}};
  const auto said = processes.run(tool, arguments);
  ASSERT_TRUE(said) << said.error().text();
  const auto theirs = runsInOutput(said->output);
  ASSERT_EQ(theirs.size(), rules.size()) << said->complaints;
  for (std::size_t i = 0; i < rules.size(); ++i) {
    const ZoneStretches zone(rules[i].zone, base, base + days(9 * 366));
    EXPECT_EQ(ours(rules[i], zone, base), theirs[i]) << expression(rules[i]) << " after " << utcText(base);
  }
}

TEST(CalendarExpressionsTest, RunsEqualThoseOfAnEquivalentExpression) {
  if (!std::filesystem::exists(tool)) GTEST_SKIP() << "missing: " << tool;
  constexpr sys_seconds bases[] = {sys_days(2026y / 2 / 27) + 13h + 20min + 7s,    // before a month end
                                   sys_days(2026y / 3 / 28) + 22h + 59min + 30s,   // before the clocks go forward
                                   sys_days(2026y / 10 / 24) + 21h + 11min + 1s};  // before they go back
  Rules rules;
  for (const sys_seconds base : bases) compare(rules, 167, base);
}

}  // namespace
}  // namespace mirvel
