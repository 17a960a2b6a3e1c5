#include "core/schedule/ZoneStretches.h"

#include <gtest/gtest.h>

namespace mirvel {
namespace {

using namespace std::chrono;

constexpr local_days day(year_month_day date) {
  return local_days(date);
}

TEST(ZoneStretches, TellMomentsByTheClockOnTheWall) {
  const struct {
    const char* zone;
    local_seconds shown;
    sys_seconds moment;
    local_seconds shownThen;  ///< the same, unless that time is skipped
  } rows[] = {
      {"Europe/Berlin", day(2026y / 3 / 29) + 1h + 59min, sys_days(2026y / 3 / 29) + 59min,
       day(2026y / 3 / 29) + 1h + 59min},
      {"Europe/Berlin", day(2026y / 3 / 29) + 2h + 30min, sys_days(2026y / 3 / 29) + 1h, day(2026y / 3 / 29) + 3h},
      {"Europe/Berlin", day(2026y / 3 / 29) + 3h, sys_days(2026y / 3 / 29) + 1h, day(2026y / 3 / 29) + 3h},
      {"Europe/Berlin", day(2026y / 10 / 25) + 2h + 30min, sys_days(2026y / 10 / 25) + 30min,
       day(2026y / 10 / 25) + 2h + 30min},
      {"Europe/Berlin", day(2026y / 10 / 25) + 3h, sys_days(2026y / 10 / 25) + 2h, day(2026y / 10 / 25) + 3h},
      {"America/New_York", day(2026y / 11 / 1) + 1h, sys_days(2026y / 11 / 1) + 5h, day(2026y / 11 / 1) + 1h},
      {"Australia/Lord_Howe", day(2026y / 10 / 4) + 2h + 15min, sys_days(2026y / 10 / 3) + 15h + 30min,
       day(2026y / 10 / 4) + 2h + 30min},
      {"Asia/Kolkata", day(2026y / 10 / 4), sys_days(2026y / 10 / 3) + 18h + 30min, day(2026y / 10 / 4)},
  };
  for (const auto& row : rows) {
    const ZoneStretches zone(row.zone, row.moment - days(1), row.moment + days(1));
    EXPECT_EQ(zone.moment(row.shown), row.moment) << &row - rows;
    EXPECT_EQ(zone.local(row.moment), row.shownThen) << &row - rows;
  }
}

}  // namespace
}  // namespace mirvel
