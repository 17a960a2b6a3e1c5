#include <gmock/gmock.h>

#include "core/catalogue/Kind.h"
#include "core/process/SystemProcessRunner.h"
#include "ctl/CommandFixture.h"
#include "ctl/Json.h"
#include "helpers/jobhost/EmbeddedHost.h"

namespace mirvel::ctl {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

using StatusCommandTest = CommandFixture;

TEST_F(StatusCommandTest, HostThatIsNotRunningIsNotStarted) {
  const auto told = start({"status"});
  EXPECT_EQ(told.status, Success);
  EXPECT_EQ(told.out, "mirvel-host isn't running: no job is loaded\n");
  EXPECT_EQ(start({"status", "--json"}).out,
            "{\"host\":\"mirvel-host\",\"running\":false,\"jobs\":[],\"notLoaded\":[]}\n");
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "support"));
}

TEST_F(StatusCommandTest, EnabledJobsThatNobodyRunsAreToldAsSuch) {
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
            "mirvel-host isn't running: no job is loaded\n"
            "  mine  is enabled, but isn't loaded\n"
            "  everyones  is enabled, but isn't loaded\n");
  const Json json = Json::parse(start({"status", "--json"}).out);
  ASSERT_EQ(json["notLoaded"].size(), 2U);
  EXPECT_EQ(json["notLoaded"][0], Json({{"label", "mine"}, {"path", mine}}));
}

TEST_F(StatusCommandTest, LoadedJobsAreToldWithWhatTheyDo) {
  // The same folders as the command's, by the variables that lead there.
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

  EXPECT_THAT(start({"status"}).out, StartsWith("mirvel-host\n  fails  doesn't run; last exited with 1\n"
                                                "  waits  doesn't run; next run 20"));
  const Json json = Json::parse(start({"status", "--json"}).out);
  EXPECT_EQ(json["running"], true);
  ASSERT_EQ(json["jobs"].size(), 2U);
  EXPECT_EQ(json["jobs"][0]["lastExit"], Json({{"code", 1}, {"signal", 0}, {"text", "exited with 1"}}));
  EXPECT_EQ(json["jobs"][0]["nextRun"], nullptr);
  EXPECT_TRUE(json["jobs"][1]["nextRun"].is_number());
  ASSERT_TRUE(embedded.quit());
}

TEST_F(StatusCommandTest, LaunchdIsAskedWhereItIs) {
  std::filesystem::permissions(folder.write("bin/launchctl", "#!/bin/sh\n"), std::filesystem::perms::owner_all);
  answer = {.output = "PID\tStatus\tLabel\n312\t0\torg.example.a\n-\t78\torg.example.b\n-\t-15\tc\nodd line\n"};
  EXPECT_EQ(start({"status"}).out,
            "launchd\n"
            "  org.example.a  runs as process 312; last exited with 0\n"
            "  org.example.b  doesn't run; last exited with 78\n"
            "  c  doesn't run; last was ended by signal 15\n");
  answer = {.exitStatus = 1, .complaints = "no session"};
  const auto failed = start({"status"});
  EXPECT_EQ(failed.status, Failed);
  EXPECT_THAT(failed.err, HasSubstr("no session"));
}

TEST_F(StatusCommandTest, BadArgumentsAreRefused) {
  EXPECT_EQ(start({"status", "file"}).status, Usage);
  EXPECT_EQ(start({"status", "--all"}).status, Usage);
}

}  // namespace
}  // namespace mirvel::ctl
