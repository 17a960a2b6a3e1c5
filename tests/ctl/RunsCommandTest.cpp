#include <gmock/gmock.h>

#include "ctl/CommandFixture.h"
#include "ctl/IsoTime.h"
#include "ctl/Json.h"

namespace mirvel::ctl {
namespace {

using namespace std::chrono;
using propertylist::Array;
using propertylist::Dictionary;
using testing::HasSubstr;
using testing::StartsWith;

class RunsCommandTest : public CommandFixture {
 protected:
  /// A job with these intervals that is labelled after its file.
  std::string job(const std::filesystem::path& name, const Array& intervals, Dictionary keys = {}) {
    keys.set("StartCalendarInterval", intervals);
    return CommandFixture::job(name, name.stem(), std::move(keys));
  }
};

TEST_F(RunsCommandTest, RunsAreOrderedByTimeThenByFile) {
  const auto z =
      job("z.plist", {Dictionary{{"Hour", 9}}, Dictionary{{"Weekday", 2}, {"Hour", 9}}}, {{"Disabled", true}});
  const auto a = job("a.plist", {Dictionary{{"Hour", 9}}, Dictionary{{"Hour", 7}, {"Minute", 5}}});
  const auto interval = job("i.plist", {}, {{"StartInterval", 5}});
  const Outcome outcome = start({"runs", z, a, interval, "--from", "2026-11-23T09:00", "--days=2"});
  EXPECT_EQ(outcome.status, Success);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out,
            "2026-11-24 07:05  a\n"
            "2026-11-24 09:00  z\n"
            "2026-11-24 09:00  a\n"
            "2026-11-25 07:05  a\n");
}

TEST_F(RunsCommandTest, JsonTimesHaveTheirUtcOffset) {
  timeZone = "Europe/Berlin";
  const auto night = job("night.plist", {Dictionary{{"Hour", 2}, {"Minute", 30}}});
  const Outcome outcome = start({"runs", "--json", "--from", "2026-10-24T02:00:00Z", night, "--days", "2"});
  EXPECT_EQ(Json::parse(outcome.out),
            (Json{{{"label", "night"}, {"path", night}, {"time", "2026-10-25T02:30:00+02:00"}},
                  {{"label", "night"}, {"path", night}, {"time", "2026-10-26T02:30:00+01:00"}}}));
  timeZone = "America/St_Johns";
  EXPECT_THAT(start({"runs", "--json", "--from", "2026-11-21", night}).out, HasSubstr("2026-11-21T02:30:00-03:30"));
  EXPECT_EQ(start({"runs", "--json", job("never.plist", {Dictionary{{"Hour", 24}}})}).out, "[]\n");
}

TEST_F(RunsCommandTest, RunsStartNowByDefault) {
  clock.now = 1'795'000'000.5;  // 2026-11-18 11:06:40.5
  const auto hourly = job("hourly.plist", {Dictionary{{"Minute", 7}}});
  EXPECT_THAT(start({"runs", hourly}).out, StartsWith("2026-11-18 11:07  hourly\n"));
  EXPECT_EQ(Json::parse(start({"runs", "--json", hourly}).out).size(), 30U * 24);
}

TEST_F(RunsCommandTest, JobsOfTheMachineAreListedWithoutFiles) {
  job("user/LaunchAgents/mine.plist", {Dictionary{{"Hour", 12}}});
  job("local/LaunchDaemons/ours.plist", {Dictionary{{"Hour", 11}}});
  file("user/LaunchAgents/bad.plist", "<plist version=\"1.0\"><dict/></plist>");
  const Outcome outcome = start({"runs", "--from", "2026-11-21", "--days", "1"});
  EXPECT_EQ(outcome.status, Success);
  EXPECT_EQ(outcome.out, "2026-11-21 11:00  ours\n2026-11-21 12:00  mine\n");
  EXPECT_THAT(outcome.err, HasSubstr("bad.plist"));
}

TEST_F(RunsCommandTest, BadFilesAreReportedAndTheOthersListed) {
  const auto good = job("good.plist", {Dictionary{{"Day", 21}}});
  const auto bad = file("bad.plist", "no list");
  const Outcome outcome = start({"runs", bad, "/nowhere", good, "--from", "2026-11-20"});
  EXPECT_EQ(outcome.status, Failed);
  EXPECT_EQ(outcome.out, "2026-11-21 00:00  good\n");
  EXPECT_THAT(outcome.err, HasSubstr(bad));
  EXPECT_THAT(outcome.err, HasSubstr("/nowhere"));
}

TEST_F(RunsCommandTest, BadArgumentsAreRefused) {
  const std::vector<std::string> rows[] = {
      {"--days", "0"},         {"--days", "-1"}, {"--days", "3661"}, {"--days", "two"}, {"--days", "1.5"}, {"--days"},
      {"--from", "yesterday"}, {"--from", ""},   {"--from"},         {"--json=1"},      {"--unknown"},
  };
  for (std::vector<std::string> row : rows) {
    row.insert(row.begin(), "runs");
    const Outcome outcome = start(row);
    EXPECT_EQ(outcome.status, Usage) << row.back();
    EXPECT_THAT(outcome.err, HasSubstr("usage: mirvelctl runs")) << row.back();
  }
}

TEST(IsoTime, ParsesValidTimesOnly) {
  constexpr sys_seconds eight = sys_days(2026y / 11 / 21) + 8h;
  const std::pair<const char*, sys_seconds> good[] = {
      {"2026-11-21T08:00Z", eight},
      {"2026-11-21T09:00", eight},
      {"2026-11-21 09:00:07", eight + 7s},
      {"2026-11-21T09:00:07.999", eight + 7s},
      {"2026-11-21T09:00:07,5+01:00", eight + 7s},
      {"2026-11-21T13:30+0530", eight},
      {"2026-11-21T04:30-03:30", eight},
      {"2026-11-21T10:00+02", eight},
      {"2026-11-21", sys_days(2026y / 11 / 20) + 23h},
      {"2026-07-01T09:00", sys_days(2026y / 7 / 1) + 7h},
      {"2026-03-29T02:30", sys_days(2026y / 3 / 29) + 1h},      // in the skipped hour
      {"2026-10-25T02:30", sys_days(2026y / 10 / 25) + 30min},  // occurs twice
      {"2028-02-29", sys_days(2028y / 2 / 28) + 23h},
  };
  for (const auto& [text, moment] : good) EXPECT_EQ(isoMoment(text, "Europe/Berlin"), moment) << text;
  const char* bad[] = {"",
                       "2026",
                       "2026-11",
                       "2026-11-21T",
                       "2026-11-21T09",
                       "2026-11-21T9:00",
                       "2026-11-21T24:00",
                       "2026-11-21T09:60",
                       "2026-11-21T09:00:60",
                       "2026-11-21T09:00:00.",
                       "2026-11-21T09:00+",
                       "2026-11-21T09:00+1",
                       "2026-11-21T09:00+01:",
                       "2026-11-21T09:00+01:60",
                       "2026-11-21T09:00z",
                       "2026-11-21Z",
                       "2026-02-29",
                       "2026-13-01",
                       "2026-00-01",
                       "2026-01-00",
                       "20261121",
                       "2026-11-21T09:00 ",
                       " 2026-11-21",
                       "+026-11-21",
                       "2026-11-21T09:00ZZ",
                       "now"};
  for (const char* text : bad) EXPECT_EQ(isoMoment(text, "Europe/Berlin"), std::nullopt) << text;
}

TEST(IsoTime, TextHasTheUtcOffset) {
  const local_seconds nine = local_days(2026y / 11 / 21) + 9h;
  EXPECT_EQ(isoText(nine, 0s), "2026-11-21T09:00:00+00:00");
  EXPECT_EQ(isoText(nine + 5s, -210min), "2026-11-21T09:00:05-03:30");
  EXPECT_EQ(isoText(nine, 14h), "2026-11-21T09:00:00+14:00");
}

}  // namespace
}  // namespace mirvel::ctl
