#include <gmock/gmock.h>

#include "ctl/CommandFixture.h"
#include "ctl/Json.h"

namespace mirvel::ctl {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class ListCommandTest : public CommandFixture {
 protected:
  Json json(const std::vector<std::string>& arguments = {"list", "--json"}) {
    return Json::parse(start(arguments).out);
  }
  /// The paths below the folder with the contents of the files.
  std::map<std::string, std::string> everything() const {
    std::map<std::string, std::string> result;
    for (const auto& entry : fs::recursive_directory_iterator(folder.path())) {
      result[entry.path()] = entry.is_regular_file() ? testdata::bytes(entry.path()) : "(no file)";
    }
    return result;
  }
};

TEST_F(ListCommandTest, JobsAreGroupedAndAligned) {
  job("user/LaunchAgents/b.plist", "home.job10", {{"Program", "/bin/ls"}});
  job("user/LaunchAgents/a.plist", "home.job2", {{"Program", "/usr/bin/say"}, {"Disabled", true}});
  job("local/LaunchDaemons/c.plist", "org.example.webserver", {{"Program", "/bin/serve"}});
  file("local/StartupItems/Cache/Cache", "#!/bin/sh\n");
  const Outcome outcome = start({"list"});
  EXPECT_EQ(outcome.status, Success);
  EXPECT_EQ(outcome.err, "");
  EXPECT_THAT(outcome.out, StartsWith("Anna Example\n"
                                      "  home.job2              Disabled  say\n"
                                      "  home.job10                       ls\n"
                                      "\n"
                                      "root\n"
                                      "  org.example.webserver            serve\n"));
}

TEST_F(ListCommandTest, MachineWithoutJobsGivesAnEmptyList) {
  const Outcome words = start({"list"});
  EXPECT_EQ(words.status, Success);
  EXPECT_EQ(words.out, "");
  EXPECT_EQ(words.err, "mirvelctl list: no jobs found\n");
  EXPECT_EQ(start({"list", "--json"}).out, "[]\n");
}

TEST_F(ListCommandTest, JsonHasTheSixFieldsOfEveryJob) {
  const std::string agent = job("user/LaunchAgents/a.plist", "home.job", {{"Program", "/bin/ls"}, {"Disabled", true}});
  const std::string daemon = job("system/LaunchDaemons/s.plist", "system.job", {{"Program", "/bin/ls"}});
  EXPECT_EQ(json({"list", "--json", "--system"}), (Json{{{"kind", "userAgent"},
                                                         {"name", "home.job"},
                                                         {"summary", "ls"},
                                                         {"path", agent},
                                                         {"editable", true},
                                                         {"disabled", true}},
                                                        {{"kind", "systemDaemon"},
                                                         {"name", "system.job"},
                                                         {"summary", "ls"},
                                                         {"path", daemon},
                                                         {"editable", false},
                                                         {"disabled", false}}}));
}

#ifndef __APPLE__
TEST_F(ListCommandTest, LoginItemsOfALinuxDesktopAreListed) {
  file("own/clock.desktop", "[Desktop Entry]\nType=Application\nName=Clock\nExec=/opt/clock --utc\n");
  file("installed/player.desktop", "[Desktop Entry]\nType=Application\nName=Player\nExec=/opt/player\n");
  const Json jobs = json();
  ASSERT_EQ(jobs.size(), 2U);
  EXPECT_EQ(jobs[0]["kind"], "loginItemSystemPreferences");
  EXPECT_EQ(jobs[0]["path"], (folder.path() / "own/clock.desktop").string());
  EXPECT_EQ(jobs[0]["editable"], false);
  EXPECT_EQ(jobs[1]["kind"], "loginItemApplication");
  EXPECT_EQ(jobs[1]["name"], "Player");
  EXPECT_EQ(jobs[1]["summary"], "player.desktop");
  EXPECT_EQ(jobs[1]["path"], (folder.path() / "installed/player.desktop").string());
}
#endif

TEST_F(ListCommandTest, SystemJobsAreListedByOptionOrSetting) {
  job("system/LaunchAgents/s.plist", "system.job", {{"Program", "/bin/ls"}});
  EXPECT_TRUE(json().empty());
  EXPECT_EQ(json({"list", "--json", "--system"}).size(), 1U);
  file("preferences.plist", "<plist version=\"1.0\"><dict><key>ShowSystemJobs</key><true/></dict></plist>");
  EXPECT_EQ(json().size(), 1U);
}

TEST_F(ListCommandTest, BadFilesAreReportedApartFromTheList) {
  const std::string bad = file("user/LaunchAgents/bad.plist", "<plist version=\"1.0\"><dict/></plist>");
  fs::create_directory(folder.path() / "user/LaunchAgents/\x1b[2J");
  job("user/LaunchAgents/good.plist", "home.job", {{"Program", "/bin/ls"}});
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"list"}, {"list", "--json"}}) {
    const Outcome outcome = start(arguments);
    EXPECT_EQ(outcome.status, Success);
    EXPECT_THAT(outcome.err, HasSubstr("Error in: " + bad + "\nLabel not found\n"));
    EXPECT_THAT(outcome.err, HasSubstr("LaunchAgents/\\x1b[2J does not contain a valid job"));
    EXPECT_THAT(outcome.out, Not(HasSubstr("bad.plist")));
  }
  EXPECT_EQ(json().size(), 1U);
}

TEST_F(ListCommandTest, NothingOnTheMachineChanges) {
  job("local/LaunchAgents/a.plist", "a.job", {{"Program", "/bin/ls"}});
  file("preferences.plist", "no settings");
  const auto before = everything();
  EXPECT_EQ(start({"list", "--system"}).status, Success);
  EXPECT_EQ(start({"list", "--json"}).status, Success);
  EXPECT_EQ(everything(), before);
}

TEST_F(ListCommandTest, NamesAndPathsAreEscapedOnATerminal) {
  isTerminal = true;
  job("user/LaunchAgents/\xFF.plist", "a\xC2\x9B\n31m", {{"Program", "/bin/\xE2\x80\xAEls"}, {"Disabled", true}});
  const Outcome words = start({"list"});
  EXPECT_EQ(words.out,
            "\x1b[1mAnna Example\x1b[0m\n"
            "  a\\u009b\\n31m  \x1b[33mDisabled\x1b[0m  \\u202els\n");
  const Outcome asJson = start({"list", "--json"});
  EXPECT_THAT(asJson.out, Not(HasSubstr("\xC2\x9B")));
  EXPECT_EQ(Json::parse(asJson.out)[0]["name"], "a\xC2\x9B\n31m");
  EXPECT_THAT(Json::parse(asJson.out)[0]["path"].get<std::string>(), testing::EndsWith("/\xEF\xBF\xBD.plist"));
}

TEST_F(ListCommandTest, ColumnsAreAlignedByTerminalWidth) {
  const std::string longLabel(60, 'x');
  job("user/LaunchAgents/a.plist", "\xE6\x97\xA5\xE6\x9C\xAC", {{"Program", "/bin/a"}});
  job("user/LaunchAgents/b.plist",
      "e\xCC\x81"
      "e",
      {{"Program", "/bin/b"}});
  job("user/LaunchAgents/c.plist", longLabel, {{"Program", "/bin/c"}});
  const std::string list = start({"list"}).out;
  EXPECT_THAT(list, HasSubstr("\n  \xE6\x97\xA5\xE6\x9C\xAC" + std::string(46, ' ') + "a\n"));
  EXPECT_THAT(list, HasSubstr("\n  e\xCC\x81"
                              "e" +
                              std::string(48, ' ') + "b\n"));
  EXPECT_THAT(list, HasSubstr("\n  " + longLabel + "  c\n"));
}

}  // namespace
}  // namespace mirvel::ctl
