#include "ctl/JobJson.h"

#include <array>
#include <string_view>
#include <utility>

#include "core/locale/Dates.h"
#include "core/schedule/Scheduled.h"

namespace mirvel::ctl {

namespace {

using namespace Scheduled;

constexpr std::array<std::string_view, 6> kindNames = {"repeatInterval", "everyHour",  "everyDay",
                                                       "dayOfWeek",      "dayOfMonth", "dayOfYear"};
constexpr std::array<std::string_view, 4> unitNames = {"seconds", "minutes", "hours", "days"};

std::string timeText(Time time) {
  const auto twoDigits = [](int number) { return (number < 10 ? "0" : "") + std::to_string(number); };
  return twoDigits(Date::hour(time)) + ':' + twoDigits(Date::minute(time));
}

Json fields(const RepeatInterval& rule) {
  return {{"interval", rule.interval}, {"unit", unitNames[static_cast<std::size_t>(rule.unit)]}};
}
Json fields(const EveryHour& rule) {
  return {{"minute", rule.minute}};
}
Json fields(const EveryDay& rule) {
  return {{"time", timeText(rule.time)}};
}
Json fields(const DayOfWeek& rule) {
  return {{"day", rule.day}, {"time", timeText(rule.time)}};
}
Json fields(const DayOfMonth& rule) {
  return {{"day", rule.day}, {"time", timeText(rule.time)}};
}
Json fields(const DayOfYear& rule) {
  return {{"month", rule.month}, {"day", rule.day}, {"time", timeText(rule.time)}};
}

Json ruleObject(const ScheduledType& rule) {
  Json result{{"kind", kindNames[rule.index()]}};
  result.update(std::visit([](const auto& it) { return fields(it); }, rule));
  return result;
}

}  // namespace

Json jobObject(const jobfile::Plist& job) {
  Json scheduled = Json::array();
  for (const auto& rule : Scheduled::rules(job.startInterval, job.startCalendarInterval)) {
    scheduled.push_back(ruleObject(rule));
  }
  Json unknownKeys = Json::array();
  if (job.unknownKeys) unknownKeys = *job.unknownKeys;
  return {{"label", job.name},
          {"run", job.run},
          {"iconPath", job.iconPath ? Json(*job.iconPath) : Json(nullptr)},
          {"scheduled", std::move(scheduled)},
          {"unknownKeys", std::move(unknownKeys)}};
}

Json findingObject(const lint::Finding& finding) {
  Json result{{"severity", finding.severity == lint::Severity::Error ? "error" : "warning"},
              {"message", finding.message},
              {"line", finding.line},
              {"column", finding.column}};
  if (finding.offset) result["offset"] = *finding.offset;
  if (!finding.keyPath.empty()) result["key"] = finding.keyPath;
  return result;
}

}  // namespace mirvel::ctl
