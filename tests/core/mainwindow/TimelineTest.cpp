#include "core/mainwindow/Timeline.h"

#include <gmock/gmock.h>

#include <limits>

#include "core/catalogue/Launchd.h"
#include "core/mainwindow/TimelineCell.h"
#include "core/mainwindow/TimelineTexts.h"
#include "core/schedule/UtcText.h"
#include "core/schedule/ZoneStretches.h"
#include "support/JobText.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

using namespace std::chrono;
using propertylist::Array;
using propertylist::Dictionary;
using testing::ElementsAre;
using testing::IsEmpty;
using Rows = std::vector<std::string>;

class TimelineTest : public testdata::ProgramFixture {
 protected:
  void add(const std::string& label, Dictionary keys) {
    jobs.push_back(Launchd::read(testdata::jobText(label, std::move(keys)), URL::file("/" + label), Kind::userAgent,
                                 foundation.scanSettings(), console));
  }
  void addCalendar(const std::string& label, Dictionary interval) {
    add(label, {{"StartCalendarInterval", std::move(interval)}});
  }
  TimelineArray built(sys_seconds now, const char* zone = "UTC") {
    return {jobs, {}, now, TimelineTexts(localize, zone), {}};
  }
  /// "# Today" for a header, "* name" for an interval, else "2026-11-22 20:05 name" in UTC; a dash before a disabled
  /// job.
  Rows described(const TimelineArray& timeline) {
    const TimelineTexts texts(localize, "UTC");
    Rows result;
    for (std::size_t row = 0; row < timeline.count(); ++row) {
      const Timeline shown = timeline.row(row);
      const Job* const job = shown.isHeader() ? nullptr : jobs[shown.owner].get();
      const TimelineCell cell = timelineCell(timeline, row, job, nullptr, 0, texts);
      const std::string mark = shown.kind == TimelineKind::Group  ? "# "
                               : shown.kind == TimelineKind::Time ? utcText(shown.date()) + ' '
                                                                  : "* ";
      result.push_back((cell.isSecondary ? "-" : "") + mark + cell.name);
    }
    return result;
  }

  const Localize localize{"en_US"};
  Jobs jobs;
};

constexpr sys_seconds sunday = sys_days(2026y / 11 / 22) + 10h;

TEST_F(TimelineTest, IntervalsPrecedeTheDays) {
  add("plain", {});
  add("often", {{"StartInterval", 90}});
  add("both",
      {{"StartInterval", 3600}, {"Disabled", true}, {"StartCalendarInterval", Dictionary{{"Day", 24}, {"Hour", 3}}}});
  jobs.push_back(std::make_shared<Job>(Kind::loginItemApplication, "item", "", "", URL::file("/item")));
  addCalendar("noon", {{"Weekday", 1}, {"Hour", 12}});
  addCalendar("eleven", {{"Day", 22}, {"Hour", 11}, {"Month", 11}});
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
  addCalendar("never", {{"Hour", 24}});
  addCalendar("empty", {});
  EXPECT_THAT(described(built(sunday)), IsEmpty());
  add("often", {{"StartInterval", 60}});
  EXPECT_THAT(described(built(sunday)), ElementsAre("# Repeat Interval", "* often – 1 minute"));
}

TEST_F(TimelineTest, JobsAtOneMomentShareAHeaderAndEveryIntervalCounts) {
  addCalendar("b", {{"Day", 23}});
  add("a", {{"StartCalendarInterval", Array{Dictionary{{"Day", 23}}, Dictionary{{"Day", 23}, {"Hour", 1}}}}});
  EXPECT_THAT(described(built(sys_days(2026y / 11 / 22) + 23h)),
              ElementsAre("# Tomorrow", "2026-11-23 00:00 b", "2026-11-23 00:00 a", "2026-11-23 01:00 a"));
}

TEST_F(TimelineTest, DaysAreThoseOfTheZone) {
  addCalendar("noon", {{"Day", 22}, {"Hour", 23}, {"Minute", 30}});
  EXPECT_THAT(described(built(sunday, "America/New_York")), ElementsAre("# Today", "2026-11-23 04:30 noon"));
  addCalendar("early", {{"Day", 23}, {"Hour", 4}});
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
  addCalendar("noon", {{"Hour", 12}});
  const auto timeline = built(sys_days(2026y / 1 / 1) + 12h);
  EXPECT_EQ(timeline.row(0).header, "Tomorrow");
  EXPECT_EQ(timeline.row(59).date(), sys_days(2026y / 1 / 31) + 12h);
  EXPECT_EQ(timeline.count(), 60U) << "30 days, each with its header";
}

/// Some versions of the locale data have a narrow blank before "AM".
std::string withPlainBlanks(std::string text) {
  const std::string narrow = "\u202f";
  for (auto at = text.find(narrow); at != std::string::npos; at = text.find(narrow))
    text.replace(at, narrow.size(), " ");
  return text;
}

constexpr sys_seconds sundayEvening = sys_days(2026y / 11 / 22) + 20h + 5min;

TEST(TimelineTexts, AreThoseOfTheLanguageTheTimeLocaleAndTheZone) {
  const struct {
    const char* locale;
    const char* timeLocale;
    const char* zone;
    std::int64_t daysAhead;
    const char* day;
    const char* time;
  } rows[] = {
      {"en_US", "en_US", "America/New_York", 3, "Sunday, November 22, 2026", "3:05 PM"},
      {"en_US", "en_US", "Asia/Kolkata", 3, "Monday, November 23, 2026", "1:35 AM"},
      {"en_US", "en_US", "No/Where", 0, "Today", "8:05 PM"},
      {"en_US", "en_US", "UTC", 1, "Tomorrow", "8:05 PM"},
      {"en_US", "en_US", "UTC", 2, "Sunday, November 22, 2026", "8:05 PM"},
      {"en_US", "en_US", "UTC", -1, "Yesterday", "8:05 PM"},
      {"en_US", "en_US", "UTC", -3, "Sunday, November 22, 2026", "8:05 PM"},
      {"de_DE", "de_DE", "Europe/Berlin", 0, "Heute", "21:05"},
      {"de_DE", "de_DE", "Europe/Berlin", 2, "Übermorgen", "21:05"},
      {"de_DE", "de_DE", "Europe/Berlin", -2, "Vorgestern", "21:05"},
      {"de_DE", "de_DE", "Europe/Berlin", 3, "Sonntag, 22. November 2026", "21:05"},
      {"fr_FR", "fr_FR", "Europe/Paris", 3, "Dimanche 22 novembre 2026", "21:05"},
      {"en_US", "de_DE", "Europe/Berlin", 0, "Today", "21:05"},
      {"en_US", "de_DE", "Europe/Berlin", 3, "Sonntag, 22. November 2026", "21:05"},
  };
  for (const auto& row : rows) {
    const Localize localize(row.locale, {}, row.timeLocale);
    const TimelineTexts texts(localize, row.zone);
    EXPECT_EQ(texts.day(sundayEvening, row.daysAhead), row.day);
    EXPECT_EQ(withPlainBlanks(texts.time(sundayEvening)), row.time);
  }
}

TEST(TimelineTexts, FormatDurationsInHoursMinutesAndSeconds) {
  const Localize english("en", {}, "de"), german("de");
  const TimelineTexts texts(english, "UTC");
  const std::pair<std::int64_t, const char*> rows[] = {
      {0, "0 seconds"},
      {1, "1 second"},
      {59, "59 seconds"},
      {60, "1 minute"},
      {3600, "1 hour"},
      {5400, "1 hour, 30 minutes"},
      {90061, "25 hours, 1 minute, 1 second"},
      {3601, "1 hour, 1 second"},
      {-90, "-1 minute, -30 seconds"},
      {std::numeric_limits<std::int64_t>::max(), "2,562,047,788,015,215 hours, 30 minutes, 7 seconds"},
  };
  for (const auto& [length, text] : rows) EXPECT_EQ(texts.duration(seconds(length)), text);
  EXPECT_EQ(TimelineTexts(german, "UTC").duration(seconds(5400)), "1 Stunde, 30 Minuten");
}

TEST(TimelineTexts, JoinNameAndDurationSoThatTheNameIsReadFirst) {
  const Localize english("en");
  EXPECT_EQ(TimelineTexts(english, "UTC").interval("backup", "1 hour"), "backup – 1 hour");
  const Localize arabic("ar", testdata::catalogues());
  if (!arabic.isRightToLeft()) GTEST_SKIP() << "no msgfmt to compile catalogues with";
  EXPECT_EQ(TimelineTexts(arabic, "UTC").interval("backup", "x"), "\u200f\u2068backup\u2069 – \u2068x\u2069");
}

}  // namespace
}  // namespace mirvel
