#include <gmock/gmock.h>

#include "core/catalogue/Kind.h"
#include "core/process/SystemProcessRunner.h"
#include "ctl/CommandFixture.h"
#include "ctl/Json.h"
#include "helpers/jobhost/EmbeddedHost.h"

namespace mirvel::ctl {
namespace {

using testing::StartsWith;

using StatusCommandTest = CommandFixture;

TEST_F(StatusCommandTest, HostThatIsNotRunningIsNotStarted) {
  const auto outcome = start({"status"});
  EXPECT_EQ(outcome.status, Success);
  EXPECT_EQ(outcome.out, "mirvel-host isn't running, so no jobs are loaded\n");
  EXPECT_EQ(start({"status", "--json"}).out,
            "{\"host\":\"mirvel-host\",\"running\":false,\"jobs\":[],\"notLoaded\":[]}\n");
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "support"));
}

TEST_F(StatusCommandTest, EnabledJobsThatAreNotLoadedAreShown) {
  const auto job = [&](Kind kind, const std::string& label, const std::string& keys = {}) {
    const auto path = *kind.folderURL(roots()) / (label + ".plist");
    return file(path.lexically_relative(folder.path()),
                "<plist><dict><key>Label</key><string>" + label + "</string>" + keys + "</dict></plist>");
  };
  const auto mine = job(Kind::userAgent, "mine");
  (void)job(Kind::userAgent, "off", "<key>Disabled</key><true/>");
  (void)job(Kind::localAgent, "everyones");
  (void)job(Kind::localDaemon, "roots");
  EXPECT_EQ(start({"status"}).out,
            "mirvel-host isn't running, so no jobs are loaded\n"
            "  mine  enabled but not loaded\n"
            "  everyones  enabled but not loaded\n");
  const Json json = Json::parse(start({"status", "--json"}).out);
  ASSERT_EQ(json["notLoaded"].size(), 2U);
  EXPECT_EQ(json["notLoaded"][0], Json({{"label", "mine"}, {"path", mine}}));
}

TEST_F(StatusCommandTest, LoadedJobsAreShownWithTheirState) {
  // The host must use the same folders as the command, so it gets the variables that determine them.
  SystemProcessRunner processes{{{"PATH", "/usr/bin:/bin"}, {"HOME", folder.path()}, {"XDG_DATA_HOME", folder.path()}}};
  const auto support = folder.path() / "mirvel";
  std::filesystem::create_directory(support);
  std::filesystem::create_directory_symlink(support, folder.path() / "support");
  EmbeddedHost embedded({.places = HostPlaces::of(roots()), .program = MIRVEL_HOST}, processes);
  const auto job = [&](const std::string& label, const std::string& keys) {
    return file(label + ".plist", "<plist><dict><key>Label</key><string>" + label + "</string>" + keys +
                                      "<key>Program</key><string>/bin/false</string></dict></plist>");
  };
  ASSERT_TRUE(embedded.load(job("fails", "<key>RunAtLoad</key><true/>")));
  ASSERT_TRUE(embedded.load(job("waits", "<key>StartInterval</key><integer>86400</integer>")));
  ASSERT_TRUE(*embedded.waitForEnd("fails", std::chrono::seconds(60)));

  EXPECT_THAT(start({"status"}).out, StartsWith("mirvel-host\n  fails  not running; last run exited with 1\n"
                                                "  waits  not running; next run 20"));
  const Json json = Json::parse(start({"status", "--json"}).out);
  EXPECT_EQ(json["running"], true);
  ASSERT_EQ(json["jobs"].size(), 2U);
  EXPECT_EQ(json["jobs"][0]["lastExit"], Json({{"code", 1}, {"signal", 0}, {"text", "exited with 1"}}));
  EXPECT_EQ(json["jobs"][0]["nextRun"], nullptr);
  EXPECT_TRUE(json["jobs"][1]["nextRun"].is_number());
  ASSERT_TRUE(embedded.quit());
}

TEST_F(StatusCommandTest, LaunchdIsAskedWhereAvailable) {
  std::filesystem::permissions(folder.write("bin/launchctl", "#!/bin/sh\n"), std::filesystem::perms::owner_all);
  answer = {.output = "PID\tStatus\tLabel\n312\t0\torg.example.a\n-\t78\torg.example.b\n-\t-15\tc\nodd line\n"};
  EXPECT_EQ(start({"status"}).out,
            "launchd\n"
            "  org.example.a  running as process 312; last run exited with 0\n"
            "  org.example.b  not running; last run exited with 78\n"
            "  c  not running; last run was ended by signal 15\n");
  answer = {.exitStatus = 1, .complaints = "no session\n"};
  const auto failed = start({"status"});
  EXPECT_EQ(failed.status, Failed);
  EXPECT_EQ(failed.err, "mirvelctl status: launchctl can't list the jobs: no session\n");
}

}  // namespace
}  // namespace mirvel::ctl
