#pragma once

#include <chrono>
#include <optional>
#include <span>
#include <string>

#include "core/schedule/ComingRuns.h"

namespace mirvel::host {

/// The time zone of the machine, as far ahead as any job can ask: from one 29 February to the next can be eight years.
class Calendar {
 public:
  explicit Calendar(std::string zone) : m_zone(std::move(zone)) {}

  std::optional<std::chrono::sys_seconds> firstRun(std::span<const CalendarRule> rules, std::chrono::sys_seconds after);
  /// True if the zone is another than before.
  bool setZone(const std::string& zone);

 private:
  std::string m_zone;
  std::chrono::sys_seconds m_from{};
  std::optional<ZoneStretches> m_stretches;
};

}  // namespace mirvel::host
