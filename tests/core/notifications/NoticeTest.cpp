#include "core/notifications/Notice.h"

#include <gmock/gmock.h>

#include <cerrno>

#include "core/catalogue/Launchd.h"
#include "support/JobText.h"
#include "support/RecordingConsole.h"

namespace mirvel {
namespace {

using propertylist::Array;
using propertylist::Dictionary;
using testing::ElementsAre;
using What = JobChange::What;

class NoticeTest : public testing::Test {
 protected:
  Notice changeOf(Kind kind, Dictionary keys, What what = What::Added,
                  const std::string& label = "org.example.updater") {
    auto job =
        Launchd::read(testdata::jobText(label, std::move(keys)), URL::file("/home/x/job.plist"), kind, {}, console);
    return noticeOf(
        {.what = what, .path = "/home/x/job.plist", .job = {.known = {kind, label, ""}, .job = std::move(job)}},
        localize, "/home/x");
  }
  std::string textOf(Kind kind, Dictionary keys, What what = What::Added,
                     const std::string& label = "org.example.updater") {
    return changeOf(kind, std::move(keys), what, label).text;
  }
  std::vector<std::string> titles(const std::vector<Notice>& notices, std::int64_t omitted = 0) const {
    std::vector<std::string> result;
    for (const auto& each : notificationsFor(notices, omitted, localize))
      result.push_back(each.title + "|" + each.body);
    return result;
  }

  testdata::RecordingConsole console;
  const Localize localize{"en"};
};

TEST_F(NoticeTest, TheSentenceSaysWhatRunsWhenAndAsWhom) {
  const Dictionary hourly{{"Program", "/opt/x/updater"}, {"StartInterval", 3600}};
  const auto with = [&](const char* key, propertylist::Value value) {
    Dictionary keys = hourly;
    keys.set(key, std::move(value));
    return keys;
  };
  struct Row {
    Kind kind;
    Dictionary keys;
    const char* text;
  };
  const Row table[] = {
      {Kind::localDaemon, hourly, "“org.example.updater” was added: runs /opt/x/updater every hour, as root."},
      {Kind::userAgent, hourly, "“org.example.updater” was added: runs /opt/x/updater every hour, as you."},
      {Kind::localAgent, hourly,
       "“org.example.updater” was added: runs /opt/x/updater every hour, for every user who logs in."},
      {Kind::localDaemon, with("UserName", "www"),
       "“org.example.updater” was added: runs /opt/x/updater every hour, as the user www."},
      {Kind::userAgent, with("RunAtLoad", true),
       "“org.example.updater” was added: runs /opt/x/updater at every login and every hour, as you."},
      {Kind::userAgent, with("Disabled", true),
       "“org.example.updater” was added: it is disabled; its command is /opt/x/updater."},
      {Kind::userAgent,
       {{"ProgramArguments", Array{"/home/x/bin/a", "b c"}}},
       "“org.example.updater” was added: runs ~/bin/a \"b c\" only when it is started manually, as you."},
      {Kind::userAgent, {}, "“org.example.updater” was added: runs nothing only when it is started manually, as you."},
  };
  for (const Row& row : table) EXPECT_EQ(textOf(row.kind, row.keys), row.text);
}

TEST_F(NoticeTest, NamesCantChangeHowTheRestIsShown) {
  EXPECT_EQ(textOf(Kind::userAgent, {{"Program", "/a\x1b[1m\nb"}}, What::Changed, "a\xe2\x80\xae<b>&\n"),
            "“a‹U+202E›<b>&” was changed: runs \"/a^[[1m b\" only when it is started manually, as you.");
  const std::string text = textOf(Kind::userAgent, {{"Program", "/" + std::string(5000, 'a')}});
  EXPECT_LT(text.size(), 400U);
  EXPECT_THAT(text, testing::HasSubstr("aaa… only"));
}

TEST_F(NoticeTest, WhatIsNoReadableJobIsNamedByItsPlace) {
  const auto textOf = [&](FoundJob job, What what = What::Added) {
    return noticeOf({.what = what, .path = "/home/x/a", .from = "/etc/b", .job = std::move(job)}, localize, "/home/x")
        .text;
  };
  const KnownJob daemon{Kind::localDaemon, "job", ""}, item{Kind::localStartupItem, "item", ""},
      tool{Kind::privilegedHelperTool, "tool", ""};
  EXPECT_EQ(textOf({.known = daemon, .failure = systemError(EACCES, "read", "/home/x/a")}),
            "“job” was added: you aren’t permitted to read its file ~/a.");
  EXPECT_EQ(textOf({.known = daemon, .failure = systemError(EIO, "read", "/home/x/a")}),
            "“job” was added: its file ~/a can’t be read: Input/output error.");
  EXPECT_EQ(textOf({.known = daemon, .failure = Error{Error::Code::LimitExceeded, "the file is too large"}}),
            "“job” was added: its file ~/a can’t be read: the file is too large.");
  EXPECT_EQ(textOf({.known = daemon, .isValid = false}, What::Changed),
            "“job” was changed: its file ~/a isn’t a valid job file.");
  EXPECT_EQ(textOf({.known = item}), "“item” was added: a startup item that runs ~/a at every system start, as root.");
  EXPECT_EQ(textOf({.known = tool}, What::Moved),
            "“tool” was moved from /etc/b: a helper tool that applications run as root: ~/a.");
  EXPECT_EQ(textOf({.known = daemon}, What::Removed), "“job” was removed: ~/a.");
}

TEST_F(NoticeTest, ManyChangesAreOneSummary) {
  const auto notice = [](Notice::What what, const std::string& name) {
    return Notice{.what = what, .name = name, .text = name + "."};
  };
  const Notice failed = notice(Notice::What::Failed, "f");
  std::vector<Notice> notices{notice(Notice::What::Added, "a"), failed, notice(Notice::What::Changed, "b"),
                              notice(Notice::What::Removed, "c")};
  EXPECT_THAT(titles(notices), ElementsAre("Background job added|a.", "Background job failed|f.",
                                           "Background job changed|b.", "Background job removed|c."));
  notices.push_back(notice(Notice::What::Added, "a"));
  EXPECT_THAT(titles(notices), ElementsAre("Background jobs changed|Added: 2, Changed: 1, and Removed: 1\na, b, and c",
                                           "Background job failed|f."));
  for (int i = 0; i < 9; ++i) notices.push_back(notice(Notice::What::Moved, "m" + std::to_string(i)));
  EXPECT_THAT(titles(notices).front(),
              testing::EndsWith("Added: 2, Changed: 10, and Removed: 1\na, b, c, m0, m1, m2, m3, m4, and others"));
  EXPECT_THAT(titles({notices.front()}, 5),
              ElementsAre("Background jobs changed|Added: 1 and Changed: 5\na and others"));
  const auto told = notificationsFor({failed, notices.front()}, 5, localize);
  ASSERT_EQ(told.size(), 2U);
  EXPECT_EQ(told[0].omitted, 5) << "also beside a single notice";
  EXPECT_EQ(told[1].omitted, 0);
}

TEST_F(NoticeTest, ManyFailuresAreOneSummaryToo) {
  std::vector<Notice> notices{{.what = Notice::What::Added, .name = "added", .text = "added."}};
  for (int i = 0; i < 12; ++i) notices.push_back({.what = Notice::What::Failed, .name = "f" + std::to_string(i)});
  notices.push_back({.what = Notice::What::WorksAgain, .name = "w"});
  EXPECT_THAT(titles(notices), ElementsAre("Background jobs failed|Failed: 12 and Working again: 1\n"
                                           "f0, f1, f2, f3, f4, f5, f6, f7, and others",
                                           "Background job added|added."));
  const auto summary = notificationsFor(notices, 0, localize).front();
  EXPECT_TRUE(summary.isUrgent);
  EXPECT_EQ(summary.notices.size(), 13U);
  for (Notice& notice : notices) notice.what = Notice::What::WorksAgain;
  EXPECT_EQ(notificationsFor(notices, 0, localize).front().title, "Background jobs work again");
  EXPECT_FALSE(notificationsFor(notices, 0, localize).front().isUrgent);
}

TEST_F(NoticeTest, TheActionsFitTheNotice) {
  const auto actions = [&](Notice::What what, Kind kind, bool isDisabled = false) {
    std::string names;
    const auto made = notificationsFor({{.what = what, .kind = kind, .isDisabled = isDisabled}}, 0, localize);
    for (const auto& each : made.front().actions) names += each.name + " ";
    return names;
  };
  using Told = Notice::What;
  EXPECT_EQ(actions(Told::Added, Kind::userAgent), "show disable quiet ");
  EXPECT_EQ(actions(Told::Changed, Kind::localDaemon), "show disable quiet ");
  EXPECT_EQ(actions(Told::Added, Kind::systemAgent), "show quiet ");
  EXPECT_EQ(actions(Told::Added, Kind::privilegedHelperTool), "show quiet ");
  EXPECT_EQ(actions(Told::Changed, Kind::userAgent, true), "show quiet ") << "it is disabled already";
  EXPECT_EQ(actions(Told::Removed, Kind::userAgent), "quiet ");
  EXPECT_EQ(actions(Told::Failed, Kind::userAgent), "log disable quiet ");
  EXPECT_EQ(actions(Told::WorksAgain, Kind::userAgent), "log quiet ");
  EXPECT_EQ(actions(Told::Trouble, Kind::userAgent), "");
}

TEST_F(NoticeTest, AJobThatIsDisabledIsntOfferedToBeDisabled) {
  EXPECT_TRUE(changeOf(Kind::userAgent, {{"Program", "/a"}, {"Disabled", true}}).isDisabled);
  EXPECT_FALSE(changeOf(Kind::userAgent, {{"Program", "/a"}, {"Disabled", false}}).isDisabled);
}

TEST_F(NoticeTest, AFailureHasItsLastLine) {
  const RunEnd end{.code = 3};
  EXPECT_EQ(noticeOfFailure("job", "/a", end, "", localize).text, "“job” failed: exit code 3.");
  EXPECT_EQ(noticeOfFailure("job", "/a", end, "no \x1b space", localize).text,
            "“job” failed: exit code 3. It printed: no ^[ space");
  EXPECT_EQ(noticeOfFailure("job", "/a", end, "\xff", localize).text, "“job” failed: exit code 3.");
}

TEST_F(NoticeTest, WhatIsStoredIsReadAndNothingElse) {
  const Notice notice{.what = Notice::What::Removed,
                      .kind = Kind::localDaemon,
                      .name = "n",
                      .path = "/\xff",
                      .text = "t",
                      .title = "title",
                      .isDisabled = true};
  EXPECT_EQ(Notice::read(notice.write()), notice);
  const std::pair<const char*, propertylist::Value> damages[] = {
      {"What", 7}, {"What", -1},  {"What", "1"}, {"Kind", 11},     {"Kind", -1},
      {"Name", 1}, {"Path", "/"}, {"Text", 1},   {"Title", false}, {"Disabled", 1}};
  for (const auto& [key, value] : damages) {
    auto damaged = notice.write();
    damaged.set(key, value);
    EXPECT_FALSE(Notice::read(damaged)) << key;
    damaged.remove(key);
    EXPECT_FALSE(Notice::read(damaged)) << key;
  }
}

}  // namespace
}  // namespace mirvel
