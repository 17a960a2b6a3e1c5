#include "core/locale/Dates.h"

#include <gtest/gtest.h>

namespace mirvel {
namespace {

TEST(DatesTest, NamesAreInCalendarOrderAndStandalone) {
  EXPECT_EQ(Date::weekdays("en").front(), "Sunday");
  EXPECT_EQ(Date::weekdays("en").back(), "Saturday");
  EXPECT_EQ(Date::weekdays("de_DE").at(3), "Mittwoch");
  EXPECT_EQ(Date::months("en").front(), "January");
  EXPECT_EQ(Date::months("fr").back(), "d\u00e9cembre");
  EXPECT_EQ(Date::months("cs").front(), "leden");  // in a date it would be "ledna"
  EXPECT_FALSE(Date::weekdays("xx_NOWHERE").front().empty());
}

TEST(DatesTest, EveryTimeOfDayKeepsItsHourAndMinute) {
  for (int hour = 0; hour < 24; ++hour) {
    for (int minute = 0; minute < 60; ++minute) {
      const auto time = Date::timeOfDay(hour, minute);
      ASSERT_EQ(Date::hour(time), hour);
      ASSERT_EQ(Date::minute(time), minute);
    }
  }
  EXPECT_EQ(Date::timeOfDay(0, 0).time_since_epoch().count(), 946684800);
  EXPECT_EQ(Date::hour(std::chrono::local_seconds(std::chrono::seconds(-60))), 23);
}

}  // namespace
}  // namespace mirvel
