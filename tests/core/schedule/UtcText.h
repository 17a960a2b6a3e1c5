#pragma once

#include <chrono>
#include <cstdio>
#include <string>

namespace mirvel {

/// "2026-03-29 01:30".
inline std::string utcText(std::chrono::sys_seconds moment) {
  using namespace std::chrono;
  const year_month_day date(floor<days>(moment));
  const hh_mm_ss time(moment - floor<days>(moment));
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%04d-%02u-%02u %02d:%02d", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()));
  return buffer;
}

}  // namespace mirvel
