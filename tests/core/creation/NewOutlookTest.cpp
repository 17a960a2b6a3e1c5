#include "core/creation/NewController.h"

#include "core/creation/CreationFixture.h"
#include "core/explain/NextRuns.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

using namespace std::chrono;
using testing::IsEmpty;

TEST(NewOutlookTest, OneSentenceSaysWhatWillHappen) {
  using Change = std::function<void(jobfile::Plist&)>;
  const Change nothing = [](jobfile::Plist& plist) { plist.runAtLoad = false; };
  const Change atLoad = [](jobfile::Plist&) {};
  const Change nightly = [](jobfile::Plist& plist) {
    plist.startCalendarInterval = {.intervals = {{.minute = 0, .hour = 21}}};
    plist.runAtLoad = false;
  };
  const Change all = [](jobfile::Plist& plist) {
    plist.keepAlive = jobfile::KeepAlive{.successfulExit = true};
    plist.startInterval = 7200;
    plist.watchPaths = {"/home/x/A b"};
  };
  const struct {
    const char* locale;
    Kind kind;
    Change change;
    const char* sentence;
  } table[] = {
      {"en", Kind::userAgent, nothing, "“backup” runs as you only when it is started manually."},
      {"en", Kind::userAgent, atLoad, "“backup” runs as you at every login and once when it is saved."},
      {"en", Kind::userAgent, nightly, "“backup” runs as you every day at 9:00 PM."},
      {"en", Kind::localAgent, nightly, "“backup” runs for every logged-in user every day at 9:00 PM."},
      {"en", Kind::localDaemon, atLoad, "“backup” runs as root at every system start and once when it is saved."},
      {"en", Kind::localDaemon, all,
       "“backup” runs as root again when it exits successfully, every 2 hours, when ~/A b changes, at every system "
       "start, and once when it is saved."},
      {"de", Kind::userAgent, nothing, "„backup“ läuft unter Ihrem Namen nur bei manuellem Start."},
      {"de", Kind::userAgent, nightly, "„backup“ läuft unter Ihrem Namen jeden Tag um 21:00 Uhr."},
      {"de", Kind::localDaemon, atLoad, "„backup“ läuft als root bei jedem Systemstart und einmal beim Speichern."},
      {"ar", Kind::userAgent, atLoad, "تعمل «\u2068backup\u2069» باسمك عند كل تسجيل دخول ومرة واحدة عند الحفظ."},
  };
  for (const auto& row : table) {
    const std::string locale = row.locale;
    if (locale != "en" && !std::filesystem::exists(testdata::catalogues())) continue;  // no msgfmt made them
    jobfile::Plist plist = jobfile::Plist::blankPlist();
    plist.name = "backup";
    row.change(plist);
    EXPECT_EQ(newJobSentence(row.kind, plist, Localize(locale, testdata::catalogues()), "/home/x"), row.sentence);
  }
}

TEST(NewOutlookTest, TheNextRunsAreThoseOfTheCalendarAndOfTheInterval) {
  using Interval = jobfile::StartCalendarInterval::Interval;
  const Localize localize("de_DE");
  const MomentTexts texts(localize, "UTC");
  const sys_seconds now = sys_days(2026y / 11 / 22) + 20h;
  const struct {
    std::optional<std::int64_t> seconds;
    std::vector<Interval> calendar;
    std::vector<std::string> runs;
  } table[] = {
      {{}, {}, {}},
      {{}, {{.minute = 60}}, {}},
      {{}, {{.minute = 0, .hour = 21}}, {"heute, 21:00", "morgen, 21:00", "Dienstag, 21:00"}},
      {{},
       {{.minute = 0, .hour = 0, .day = 29, .month = 2}},
       {"29. Feb. 2028, 00:00", "29. Feb. 2032, 00:00", "29. Feb. 2036, 00:00"}},
      {7200, {}, {"heute, 22:00", "morgen, 00:00", "morgen, 02:00"}},
      {7200, {{.minute = 0, .hour = 23}}, {"heute, 22:00", "heute, 23:00", "morgen, 00:00"}},
      {3600, {{.minute = 0}}, {"heute, 21:00", "heute, 22:00", "heute, 23:00"}},
      {-5, {}, {}},
      {INT64_MAX, {}, {}},
  };
  for (const auto& row : table) {
    jobfile::Plist plist;
    plist.startInterval = row.seconds;
    if (!row.calendar.empty()) plist.startCalendarInterval = {.intervals = row.calendar};
    EXPECT_EQ(nextRunTexts(plist, now, 3, texts), row.runs) << "row " << &row - table;
  }
}

class OutlookOfSheetTest : public CreationFixture {};

TEST_F(OutlookOfSheetTest, RulesCountOnlyWhileTheJobIsScheduled) {
  NewController sheet(program().creationContext);
  Scheduled::RuleEditor editor(program().scheduledController);
  sheet.when.setRuleEditor(&editor);
  sheet.name.setName("a");
  sheet.when.runAtLoad(false);
  sheet.when.scheduled(true);
  editor.setNumber(0, "3600");
  EXPECT_EQ(sheet.outlook().sentence, "“a” runs as you every hour.");
  EXPECT_EQ(sheet.outlook().nextRuns.size(), 3U);
  sheet.when.scheduled(false);
  EXPECT_EQ(sheet.outlook().sentence, "“a” runs as you only when it is started manually.");
  EXPECT_THAT(sheet.outlook().nextRuns, IsEmpty());
}

}  // namespace
}  // namespace mirvel
