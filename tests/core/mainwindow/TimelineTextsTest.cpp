#include "core/mainwindow/TimelineTexts.h"
#include "support/TestData.h"

#include <gtest/gtest.h>

#include <limits>

namespace mirvel {
namespace {

using namespace std::chrono;

/// Some versions of the locale data have a narrow blank before "AM".
std::string withPlainBlanks(std::string text) {
  const std::string narrow = "\u202f";
  for (auto at = text.find(narrow); at != std::string::npos; at = text.find(narrow))
    text.replace(at, narrow.size(), " ");
  return text;
}

constexpr sys_seconds sundayEvening = sys_days(2026y / 11 / 22) + 20h + 5min;

TEST(TimelineTexts, DatesAndTimesAreThoseOfTheirOwnLocaleAndWordsThoseOfTheLanguage) {
  const Localize localize("en_US", {}, "de_DE");
  const TimelineTexts texts(localize, "Europe/Berlin");
  EXPECT_EQ(texts.day(sundayEvening, 0), "Today");
  EXPECT_EQ(texts.day(sundayEvening, 3), "Sonntag, 22. November 2026");
  EXPECT_EQ(texts.time(sundayEvening), "21:05");
  EXPECT_EQ(texts.duration(2h), "2 hours");
}

TEST(TimelineTexts, AreThoseOfTheLanguageAndTheZone) {
  const struct {
    const char* locale;
    const char* zone;
    std::int64_t daysAhead;
    const char* day;
    const char* time;
  } rows[] = {
      {"en_US", "America/New_York", 3, "Sunday, November 22, 2026", "3:05 PM"},
      {"en_US", "Asia/Kolkata", 3, "Monday, November 23, 2026", "1:35 AM"},
      {"en_US", "No/Where", 0, "Today", "8:05 PM"},
      {"en_US", "UTC", 1, "Tomorrow", "8:05 PM"},
      {"en_US", "UTC", 2, "Sunday, November 22, 2026", "8:05 PM"},
      {"en_US", "UTC", -1, "Sunday, November 22, 2026", "8:05 PM"},
      {"de_DE", "Europe/Berlin", 0, "Heute", "21:05"},
      {"de_DE", "Europe/Berlin", 2, "Übermorgen", "21:05"},
      {"de_DE", "Europe/Berlin", 3, "Sonntag, 22. November 2026", "21:05"},
      {"fr_FR", "Europe/Paris", 3, "Dimanche 22 novembre 2026", "21:05"},
  };
  for (const auto& row : rows) {
    const Localize localize(row.locale);
    const TimelineTexts texts(localize, row.zone);
    EXPECT_EQ(texts.day(sundayEvening, row.daysAhead), row.day);
    EXPECT_EQ(withPlainBlanks(texts.time(sundayEvening)), row.time);
  }
}

TEST(TimelineTexts, FormatDurationsInHoursMinutesAndSeconds) {
  const Localize english("en"), german("de");
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
