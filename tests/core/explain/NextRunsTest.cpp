#include "core/explain/NextRuns.h"

#include <gtest/gtest.h>

namespace mirvel {
namespace {

using namespace std::chrono;
using Interval = jobfile::StartCalendarInterval::Interval;

/// Some versions of the locale data have a narrow no-break space before "AM".
std::string withPlainSpaces(std::string text) {
  const std::string narrow = "\u202f";
  for (auto at = text.find(narrow); at != std::string::npos; at = text.find(narrow))
    text.replace(at, narrow.size(), " ");
  return text;
}

struct Schedule {
  std::optional<std::int64_t> seconds = {};
  std::optional<std::vector<Interval>> intervals = {};

  jobfile::Plist record() const {
    jobfile::Plist record;
    record.startInterval = seconds;
    if (intervals) record.startCalendarInterval = {.intervals = *intervals};
    return record;
  }
};

std::optional<std::string> textOf(const Schedule& schedule, sys_seconds now, const char* locale = "en_US",
                                  const char* zone = "UTC") {
  const Localize localize(locale);
  const MomentTexts texts(localize, zone);
  const auto text = nextRunsText(schedule.record(), now, texts);
  return text ? std::optional(withPlainSpaces(*text)) : std::nullopt;
}

constexpr sys_seconds sundayEvening = sys_days(2026y / 11 / 22) + 20h + 5min;

TEST(NextRunsTest, TheNextTwoRunsAreNamedRelativeToToday) {
  const std::pair<Schedule, std::optional<std::string>> table[] = {
      {{}, std::nullopt},
      {{{}, {{{.minute = 0, .hour = 9}}}}, "Next: tomorrow 9:00 AM, then Tuesday 9:00 AM"},
      {{{}, {{{.minute = 6, .hour = 20}}}}, "Next: today 8:06 PM, then tomorrow 8:06 PM"},
      {{{}, {{{.minute = 5, .hour = 20}}}}, "Next: tomorrow 8:05 PM, then Tuesday 8:05 PM"},
      {{{}, {{{.minute = 0, .hour = 9, .weekday = 6}}}}, "Next: Saturday 9:00 AM, then Dec 5, 9:00 AM"},
      {{{}, {{{.minute = 0, .hour = 9, .weekday = 0}}}}, "Next: Nov 29, 9:00 AM, then Dec 6, 9:00 AM"},
      {{{}, {{{.minute = 0, .hour = 0, .day = 31}}}}, "Next: Dec 31, 12:00 AM, then Jan 31, 2027, 12:00 AM"},
      {{{}, {{{.minute = 30}}}}, "Next: today 8:30 PM, then today 9:30 PM"},
      {{{}, {{{.minute = 0, .hour = 12, .weekday = 5}, {.minute = 0, .hour = 7, .weekday = 3}}}},
       "Next: Wednesday 7:00 AM, then Friday 12:00 PM"},
      {{{}, {{{.minute = 0, .hour = 12, .day = 29, .month = 2}}}},
       "Next: Feb 29, 2028, 12:00 PM, then Feb 29, 2032, 12:00 PM"},
      {{{}, {{{.minute = 0, .hour = 12, .day = 31, .month = 2}}}}, "It will never run on this schedule"},
      {{{}, {{{.minute = 60}}}}, "It will never run on this schedule"},
      {{{}, std::vector<Interval>{}}, "It will never run on this schedule"},
      {{{}, std::vector<Interval>{{}}}, "Next: today 8:06 PM, then today 8:07 PM"},
      {{7200, {}}, "Every 2 hours, counted from when the job is loaded"},
      {{0, {}}, "It will never run on this schedule"},
      {{60, {{{.minute = 0, .hour = 9}}}},
       "Next: tomorrow 9:00 AM, then Tuesday 9:00 AM\nEvery minute, counted from when the job is loaded"},
      {{60, {{{.minute = 60}}}}, "Every minute, counted from when the job is loaded"},
      {{-5, {{{.minute = 0, .hour = 9}}}}, "Next: tomorrow 9:00 AM, then Tuesday 9:00 AM"},
  };
  for (const auto& [schedule, text] : table) {
    EXPECT_EQ(textOf(schedule, sundayEvening), text) << "row " << &schedule - &table[0].first;
  }
}

TEST(NextRunsTest, MomentsFollowTheLanguageAndTheTimeZone) {
  const Schedule atNine{{}, {{{.minute = 0, .hour = 9}}}};
  const Schedule onChristmas{{}, {{{.minute = 0, .hour = 21, .day = 24, .month = 12}}}};
  const struct {
    Schedule schedule;
    const char* locale;
    const char* zone;
    const char* text;
  } table[] = {
      {atNine, "de_DE", "Europe/Berlin", "Next: morgen, 09:00, then Dienstag, 09:00"},
      {onChristmas, "de_DE", "Europe/Berlin", "Next: 24. Dez., 21:00, then 24. Dez. 2027, 21:00"},
      {atNine, "fr_FR", "Europe/Paris", "Next: demain 09:00, then mardi 09:00"},
      {atNine, "en_US", "Asia/Tokyo", "Next: today 9:00 AM, then tomorrow 9:00 AM"},
      {atNine, "en_US", "No/Where", "Next: tomorrow 9:00 AM, then Tuesday 9:00 AM"},
  };
  for (const auto& row : table) {
    EXPECT_EQ(textOf(row.schedule, sundayEvening, row.locale, row.zone), row.text) << row.locale << ' ' << row.zone;
  }
}

TEST(NextRunsTest, TheLeapDayIsFoundAcrossACenturyWithoutOne) {
  const Schedule leapDay{{}, {{{.minute = 0, .hour = 0, .day = 29, .month = 2}}}};
  EXPECT_EQ(textOf(leapDay, sys_days(2096y / 3 / 1)), "Next: Feb 29, 2104, 12:00 AM, then Feb 29, 2108, 12:00 AM");
}

TEST(NextRunsTest, RunsOfTheCalendarAndOfTheIntervalAreMerged) {
  const Localize localize("de_DE");
  const MomentTexts texts(localize, "UTC");
  const sys_seconds now = sys_days(2026y / 11 / 22) + 20h;
  const std::pair<Schedule, std::vector<std::string>> table[] = {
      {{}, {}},
      {{{}, {{{.minute = 60}}}}, {}},
      {{{}, {{{.minute = 0, .hour = 21}}}}, {"heute, 21:00", "morgen, 21:00", "Dienstag, 21:00"}},
      {{{}, {{{.minute = 0, .hour = 0, .day = 29, .month = 2}}}},
       {"29. Feb. 2028, 00:00", "29. Feb. 2032, 00:00", "29. Feb. 2036, 00:00"}},
      {{7200, {}}, {"heute, 22:00", "morgen, 00:00", "morgen, 02:00"}},
      {{7200, {{{.minute = 0, .hour = 23}}}}, {"heute, 22:00", "heute, 23:00", "morgen, 00:00"}},
      {{3600, {{{.minute = 0}}}}, {"heute, 21:00", "heute, 22:00", "heute, 23:00"}},
      {{-5, {}}, {}},
      {{INT64_MAX, {}}, {}},
  };
  for (const auto& [schedule, runs] : table) {
    EXPECT_EQ(nextRunTexts(schedule.record(), now, 3, texts), runs);
  }
}

}  // namespace
}  // namespace mirvel
