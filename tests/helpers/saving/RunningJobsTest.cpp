#include "helpers/host/Signpost.h"
#include "helpers/jobhost/HostAutostart.h"
#include "helpers/saving/RunningJobsFixture.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using propertylist::Array;
using propertylist::Dictionary;
using testing::IsEmpty;

using RunningJobsTest = testdata::RunningJobsFixture;

TEST_F(RunningJobsTest, ADaemonIsSavedByRootAndMovesToAnAgentAndBack) {
  const auto made = newJob(Kind::localDaemon, {{"ProgramArguments", Array{"/bin/sh", "-c", "echo ran"}},
                                               {"RunAtLoad", true},
                                               {"StandardOutPath", output.string()}});
  save(made);
  ASSERT_TRUE(rootsHost.waitForEnd("job", std::chrono::seconds(60))->hasEnded);
  EXPECT_EQ(testdata::bytes(output), "ran\n");

  const auto fileOf = [this](Kind kind) { return *kind.folderURL(roots) / "job.plist"; };
  std::string expected = "ran\n";
  for (const Kind kind : {Kind::userAgent, Kind::localDaemon}) {
    const auto job = read();
    ASSERT_TRUE(job);
    const fs::path before = job->url.path();
    job->kind = kind;
    save(job);
    const Kind other = kind == Kind::userAgent ? Kind::localDaemon : Kind::userAgent;
    EXPECT_FALSE(fs::exists(before));
    ASSERT_EQ(loaded(kind).size(), 1U);
    EXPECT_THAT(loaded(other), IsEmpty());
    ASSERT_TRUE((kind == Kind::userAgent ? host : rootsHost).waitForEnd("job", std::chrono::seconds(60))->hasEnded);
    expected += "ran\n";
    EXPECT_EQ(testdata::bytes(output), expected);
    EXPECT_EQ(loaded(kind).front().path, fileOf(kind).string());
  }

  program.actions.deleteConfirmed(*read());
  waitFor([&] { return !fs::exists(fileOf(Kind::localDaemon)); });
  EXPECT_THAT(loaded(Kind::localDaemon), IsEmpty());
}

TEST_F(RunningJobsTest, UninstallingStopsTheJobsThatItNamesAndKeepsFilesAndLogs) {
  for (const Kind kind : {Kind::userAgent, Kind::localDaemon}) {
    const auto command = Array{"/bin/sh", "-c", "echo said; exec /bin/sleep 1000"};
    save(newJob(kind, {{"ProgramArguments", command}, {"RunAtLoad", true}}));
    ASSERT_EQ(loaded(kind).size(), 1U);
  }
  const auto processes = std::vector{*loaded().front().process, *loaded(Kind::localDaemon).front().process};
  const fs::path autostart = roots.ownAutostart / HostAutostart::fileName;
  const HostPlaces places = HostPlaces::of(roots);
  ASSERT_TRUE(fs::exists(autostart));
  waitFor([&] { return !fs::is_empty(places.log()); });
  program.runs.begin();
  const auto isKnown = [&](RunDomain domain) { return program.runs.reports(domain).contains("job"); };
  waitFor([&] { return isKnown(RunDomain::User) && isKnown(RunDomain::Root); });

  program.hostStart.begin();
  program.uninstaller.uninstall();
  waitFor([&] { return program.uninstaller.state() == Uninstaller::State::Idle; });
  ASSERT_EQ(interface.alerts.size(), 1U);
  EXPECT_THAT(interface.alerts[0].informativeText,
              testing::StartsWith("These 2 jobs will be stopped:\n• job (root), running now\n• job, running now\n"));
  EXPECT_EQ(program.uninstaller.status(), "The helpers were uninstalled.");
  EXPECT_THAT(loaded(), IsEmpty());
  EXPECT_THAT(loaded(Kind::localDaemon), IsEmpty());
  for (const auto process : processes) EXPECT_FALSE(host::isAlive(std::to_string(process)));
  for (const auto& removed : {autostart, places.socket, places.runs(), places.loadedJobs()}) {
    EXPECT_FALSE(fs::exists(removed)) << removed;
  }
  EXPECT_FALSE(fs::is_empty(places.log()));
  for (const Kind kind : {Kind::userAgent, Kind::localDaemon}) {
    EXPECT_TRUE(fs::exists(*kind.folderURL(roots) / "job.plist"));
  }
  // A later save starts the host again.
  const auto job = read();
  ASSERT_TRUE(job);
  save(job);
  EXPECT_EQ(loaded(job->kind).size(), 1U);
}

}  // namespace
}  // namespace mirvel
