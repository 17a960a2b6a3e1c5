#include "core/schedule/ZoneStretches.h"

#include <gtest/gtest.h>

#include <optional>

namespace mirvel {
namespace {

using namespace std::chrono;

constexpr local_days day(year_month_day date) {
  return local_days(date);
}

TEST(ZoneStretchesTest, LocalTimesAndMomentsAreConverted) {
  const struct {
    const char* zone;
    local_seconds local;
    sys_seconds moment;
    std::optional<local_seconds> localThen = {};  ///< if `local` is skipped
  } rows[] = {
      {"Europe/Berlin", day(2026y / 3 / 29) + 1h + 59min, sys_days(2026y / 3 / 29) + 59min},
      {"Europe/Berlin", day(2026y / 3 / 29) + 2h + 30min, sys_days(2026y / 3 / 29) + 1h, day(2026y / 3 / 29) + 3h},
      {"Europe/Berlin", day(2026y / 3 / 29) + 3h, sys_days(2026y / 3 / 29) + 1h},
      {"Europe/Berlin", day(2026y / 10 / 25) + 2h + 30min, sys_days(2026y / 10 / 25) + 30min},
      {"Europe/Berlin", day(2026y / 10 / 25) + 3h, sys_days(2026y / 10 / 25) + 2h},
      {"America/New_York", day(2026y / 11 / 1) + 1h, sys_days(2026y / 11 / 1) + 5h},
      {"Australia/Lord_Howe", day(2026y / 10 / 4) + 2h + 15min, sys_days(2026y / 10 / 3) + 15h + 30min,
       day(2026y / 10 / 4) + 2h + 30min},
      {"Asia/Kolkata", day(2026y / 10 / 4), sys_days(2026y / 10 / 3) + 18h + 30min},
  };
  for (const auto& row : rows) {
    const ZoneStretches zone(row.zone, row.moment - days(1), row.moment + days(1));
    EXPECT_EQ(zone.moment(row.local), row.moment) << &row - rows;
    EXPECT_EQ(zone.local(row.moment), row.localThen.value_or(row.local)) << &row - rows;
  }
}

}  // namespace
}  // namespace mirvel
