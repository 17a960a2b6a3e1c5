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
  const auto agent = [&](Kind kind, const std::string& label, propertylist::Dictionary keys = {}) {
    const auto path = *kind.folderURL(roots()) / (label + ".plist");
    return job(path.lexically_relative(folder.path()), label, std::move(keys));
  };
  const auto mine = agent(Kind::userAgent, "mine");
  (void)agent(Kind::userAgent, "off", {{"Disabled", true}});
  (void)agent(Kind::localAgent, "everyones");
  (void)agent(Kind::localDaemon, "roots");
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
  const std::string program = "/bin/false";
  ASSERT_TRUE(embedded.load(job("fails.plist", "fails", {{"Program", program}, {"RunAtLoad", true}})));
  ASSERT_TRUE(embedded.load(job("waits.plist", "waits", {{"Program", program}, {"StartInterval", 86400}})));
  ASSERT_TRUE(embedded.waitForEnd("fails", std::chrono::seconds(60))->hasEnded);

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
  tools.answer =
      ProcessResult{.output = "PID\tStatus\tLabel\n312\t0\torg.example.a\n-\t78\torg.example.b\n-\t-15\tc\nodd line\n"};
  EXPECT_EQ(start({"status"}).out,
            "launchd\n"
            "  org.example.a  running as process 312; last run exited with 0\n"
            "  org.example.b  not running; last run exited with 78\n"
            "  c  not running; last run was ended by signal 15\n");
  tools.answer = ProcessResult{.exitStatus = 1, .complaints = "no session\n"};
  const auto failed = start({"status"});
  EXPECT_EQ(failed.status, Failed);
  EXPECT_EQ(failed.err, "mirvelctl status: launchctl can't list the jobs: no session\n");
}

}  // namespace
}  // namespace mirvel::ctl
