#include "core/mainwindow/Timeline.h"

#include <gmock/gmock.h>

#include "core/catalogue/Launchd.h"
#include "core/mainwindow/TimelineTexts.h"
#include "core/schedule/ZoneStretches.h"
#include "support/JobText.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

using namespace std::chrono;
using testing::ElementsAre;
using testing::IsEmpty;
using Rows = std::vector<std::string>;

static_assert(sizeof(Timeline) <= 64);

propertylist::Dictionary at(std::initializer_list<std::pair<const char*, std::int64_t>> numbers) {
  propertylist::Dictionary interval;
  for (const auto& [key, number] : numbers) interval.set(key, propertylist::Value(number));
  return interval;
}

class TimelineTest : public testdata::ProgramFixture {
 protected:
  void add(const std::string& label, propertylist::Dictionary keys) {
    jobs.push_back(Launchd::read(testdata::jobText(label, std::move(keys)), URL::file("/" + label), Kind::userAgent,
                                 foundation.scanSettings(), console));
  }
  void addCalendar(const std::string& label, propertylist::Dictionary interval) {
    add(label, {{"StartCalendarInterval", propertylist::Value(std::move(interval))}});
  }
  TimelineArray built(sys_seconds now, const char* zone = "UTC") {
    return buildTimeline(jobs, now, TimelineTexts(localize, zone));
  }
  /// "# Today" for a header, "* name" for an interval, else "2026-11-22 20:05 name" in UTC; a dash before a disabled
  /// job.
  static Rows described(const TimelineArray& timeline) {
    Rows result;
    for (const Timeline& row : timeline.rows()) {
      const year_month_day date(floor<days>(row.date()));
      const hh_mm_ss time(row.date() - floor<days>(row.date()));
      char moment[64];
      std::snprintf(moment, sizeof moment, "%04d-%02u-%02u %02d:%02d ", static_cast<int>(date.year()),
                    static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                    static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()));
      const std::string mark = row.kind() == TimelineKind::Group  ? "# "
                               : row.kind() == TimelineKind::Time ? moment
                                                                  : "* ";
      result.push_back((row.isEnabled() ? "" : "-") + mark + row.name());
      EXPECT_EQ(row.url().has_value(), row.kind() != TimelineKind::Group);
    }
    return result;
  }

  const Localize localize{"en_US"};
  Jobs jobs;
};

constexpr sys_seconds sunday = sys_days(2026y / 11 / 22) + 10h;

TEST_F(TimelineTest, IntervalsPrecedeTheDays) {
  add("plain", {});
  add("often", {{"StartInterval", propertylist::Value(90)}});
  add("both", {{"StartInterval", propertylist::Value(3600)},
               {"Disabled", true},
               {"StartCalendarInterval", propertylist::Value(at({{"Day", 24}, {"Hour", 3}}))}});
  jobs.push_back(std::make_shared<Job>(Kind::loginItemApplication, "item", "", "", URL::file("/item")));
  addCalendar("noon", at({{"Weekday", 1}, {"Hour", 12}}));
  addCalendar("eleven", at({{"Day", 22}, {"Hour", 11}, {"Month", 11}}));
  const auto timeline = built(sunday);
  EXPECT_THAT(described(timeline),
              ElementsAre("# Repeat Interval", "* often – 1 minute, 30 seconds", "-* both – 1 hour",  //
                          "# Today", "2026-11-22 11:00 eleven",                                       //
                          "# Tomorrow", "2026-11-23 12:00 noon",                                      //
                          "# Tuesday, November 24, 2026", "-2026-11-24 03:00 both",                   //
                          "# Monday, November 30, 2026", "2026-11-30 12:00 noon",                     //
                          "# Monday, December 7, 2026", "2026-12-07 12:00 noon",                      //
                          "# Monday, December 14, 2026", "2026-12-14 12:00 noon",                     //
                          "# Monday, December 21, 2026", "2026-12-21 12:00 noon"));
  EXPECT_THAT(timeline.groups(), ElementsAre(0U, 3U, 5U, 7U, 9U, 11U, 13U, 15U));
}

TEST_F(TimelineTest, OnlyIntervalsHaveNoDaysAndNoScheduleNoRows) {
  EXPECT_THAT(described(built(sunday)), IsEmpty());
  addCalendar("never", at({{"Hour", 24}}));
  addCalendar("empty", {});
  EXPECT_THAT(described(built(sunday)), IsEmpty());
  add("often", {{"StartInterval", propertylist::Value(60)}});
  EXPECT_THAT(described(built(sunday)), ElementsAre("# Repeat Interval", "* often – 1 minute"));
}

TEST_F(TimelineTest, JobsAtOneMomentShareAHeaderAndEveryIntervalCounts) {
  addCalendar("b", at({{"Day", 23}}));
  add("a", {{"StartCalendarInterval",
             propertylist::Value(propertylist::Array{propertylist::Value(at({{"Day", 23}})),
                                                     propertylist::Value(at({{"Day", 23}, {"Hour", 1}}))})}});
  EXPECT_THAT(described(built(sys_days(2026y / 11 / 22) + 23h)),
              ElementsAre("# Tomorrow", "2026-11-23 00:00 b", "2026-11-23 00:00 a", "2026-11-23 01:00 a"));
}

TEST_F(TimelineTest, DaysAreThoseOfTheZone) {
  addCalendar("noon", at({{"Day", 22}, {"Hour", 23}, {"Minute", 30}}));
  EXPECT_THAT(described(built(sunday, "America/New_York")), ElementsAre("# Today", "2026-11-23 04:30 noon"));
  addCalendar("early", at({{"Day", 23}, {"Hour", 4}}));
  EXPECT_THAT(described(built(sys_days(2026y / 11 / 22) + 19h, "Asia/Kolkata")),
              ElementsAre("# Today", "2026-11-22 22:30 early", "# Tuesday, December 22, 2026", "2026-12-22 18:00 noon"))
      << "it is already the 23rd there, and a month later it ends an hour after the run";
}

TEST_F(TimelineTest, TheHorizonIsAMonthByTheCalendar) {
  struct Row {
    const char* zone;
    sys_seconds now;
    sys_seconds end;
  };
  const Row rows[] = {
      {"UTC", sys_days(2026y / 1 / 1) + 12h, sys_days(2026y / 2 / 1) + 12h},
      {"UTC", sys_days(2026y / 12 / 15) + 1s, sys_days(2027y / 1 / 15) + 1s},
      {"UTC", sys_days(2026y / 1 / 31), sys_days(2026y / 2 / 28)},
      {"UTC", sys_days(2028y / 1 / 30), sys_days(2028y / 2 / 29)},
      {"Europe/Berlin", sys_days(2026y / 3 / 15) + 11h, sys_days(2026y / 4 / 15) + 10h},
      {"Europe/Berlin", sys_days(2026y / 10 / 15) + 10h, sys_days(2026y / 11 / 15) + 11h},
      {"Europe/Berlin", sys_days(2026y / 2 / 28) + 23h, sys_days(2026y / 3 / 31) + 22h},
  };
  for (const Row& row : rows) {
    const ZoneStretches zone(row.zone, row.now, row.now + days(32));
    EXPECT_EQ(oneMonthAfter(row.now, zone), row.end) << &row - rows;
  }
  addCalendar("noon", at({{"Hour", 12}}));
  const auto timeline = built(sys_days(2026y / 1 / 1) + 12h);
  EXPECT_EQ(timeline.rows().front().name(), "Tomorrow");
  EXPECT_EQ(timeline.rows().back().date(), sys_days(2026y / 1 / 31) + 12h);
  EXPECT_EQ(timeline.rows().size(), 60U) << "30 days, each with its header";
}

TEST_F(TimelineTest, AMinuteAloneRunsInEveryHourOfTheMonth) {
  addCalendar("hourly", at({{"Minute", 15}}));
  EXPECT_EQ(built(sys_days(2026y / 11 / 1)).rows().size(), 30U * 24 + 30);
  EXPECT_EQ(built(sys_days(2026y / 2 / 28) + 23h, "Europe/Berlin").rows().size(), 31U * 24 - 1 + 31)
      << "one hour is missing in the night of 29 March";
}

}  // namespace
}  // namespace mirvel
