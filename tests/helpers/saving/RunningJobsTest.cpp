#include <gmock/gmock.h>

#include <filesystem>

#include "core/app/Program.h"
#include "core/base/ThreadWorkQueue.h"
#include "core/catalogue/Launchd.h"
#include "core/process/SystemProcessRunner.h"
#include "helpers/host/Signpost.h"
#include "helpers/jobhost/EmbeddedHost.h"
#include "helpers/jobhost/HostAutostart.h"
#include "helpers/privileged/SystemHelperConnections.h"
#include "support/FakeFolderMonitors.h"
#include "support/FakeInterface.h"
#include "support/FakeLoginItems.h"
#include "support/FakeWorkspace.h"
#include "support/JobText.h"
#include "support/RecordingConsole.h"
#include "support/TestData.h"
#include "support/ThreadQueue.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using propertylist::Array;
using propertylist::Dictionary;
using testing::IsEmpty;

/// The program's logic with the real helpers and the real host, on an empty machine below a temporary folder.
class RunningJobsTest : public testing::Test {
 protected:
  ~RunningJobsTest() override {
    EXPECT_THAT(interface.errors, IsEmpty());
    EXPECT_TRUE(host.quit());
    EXPECT_TRUE(rootsHost.quit());
  }

  std::shared_ptr<Launchd> newJob(Kind kind, const Dictionary& keys) {
    auto job = Launchd::read(testdata::jobText("job", keys), URL::address("new"), kind, {}, console);
    job->isNewFile = true;
    return job;
  }
  /// The only job of the machine after a new scan; null if there is none.
  std::shared_ptr<Launchd> read() {
    program.fetcher.fetchJobs();
    EXPECT_TRUE(queue.runUntil([this] { return !program.scanning.isBusy(); }));
    return program.catalogue.jobs().empty() ? nullptr
                                            : std::dynamic_pointer_cast<Launchd>(program.catalogue.jobs().front());
  }
  void waitFor(const std::function<bool()>& isSo) {
    ASSERT_TRUE(queue.runUntil(isSo)) << testing::PrintToString(interface.errors);
  }
  /// Saves and waits for the end of it.
  void save(const std::shared_ptr<Launchd>& job) {
    program.actions.save(job);
    waitFor([this] { return !program.saving.isBusy(); });
    EXPECT_EQ(testdata::bytes(job->url.path()), *job->plistData());
  }
  /// The jobs that are loaded in the host for this kind: the user's or root's.
  std::vector<HostedJobStatus> loaded(Kind kind = Kind::userAgent) {
    const Roots hosts = kind == Kind::userAgent ? roots : Roots::below(folder.path() / "root");
    const auto status = HostClient(HostPlaces::of(hosts).socket).status();
    return status ? *status : std::vector<HostedJobStatus>();
  }

  const testdata::TemporaryFolder folder;
  const fs::path output = folder.path() / "output";
  const Roots roots = Roots::below(folder.path());
  const Environment environment{{"PATH", "/usr/bin:/bin"}};
  Foundation foundation{roots, environment, {}, "en"};
  testdata::ThreadQueue queue;
  ThreadWorkQueue background{"Authorisation"};
  testdata::FakeInterface interface { foundation.defaults, foundation.localize };
  testdata::FakeWorkspace workspace;
  testdata::FakeFolderMonitors monitors;
  SystemProcessRunner runner{environment};
  testdata::FakeLoginItems loginItems;
  testdata::RecordingConsole console;
  SystemClock clock;
  EmbeddedHost host{EmbeddedHost::below(MIRVEL_HOST, folder.path()), runner};
  EmbeddedHost rootsHost{EmbeddedHost::below(MIRVEL_HOST, folder.path() / "root"), runner};
  SystemHelperConnections helpers{
      {.queue = queue,
       .background = background,
       .programs = HelperPrograms::in(fs::path(MIRVEL_ACTION).parent_path(), roots, environment, folder.path())}};
  ThreadWorkQueue fetchQueue{"Fetch queue"};
  Program program{foundation,
                  {.mainQueue = queue,
                   .fetchQueue = fetchQueue,
                   .fileQueue = fetchQueue,
                   .checkQueue = fetchQueue,
                   .interface = interface,
                   .workspace = workspace,
                   .folderMonitors = monitors,
                   .processRunner = runner,
                   .loginItems = loginItems,
                   .agentSwitch = nullptr,
                   .console = console,
                   .clock = clock,
                   .helpers = &helpers}};
};

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

TEST_F(RunningJobsTest, UninstallingRemovesTheHostsButNoJobFile) {
  for (const Kind kind : {Kind::userAgent, Kind::localDaemon}) {
    const auto made = newJob(kind, {{"ProgramArguments", Array{"/bin/sleep", "1000"}}, {"RunAtLoad", true}});
    save(made);
    ASSERT_EQ(loaded(kind).size(), 1U);
  }
  const auto processes = std::vector{*loaded().front().process, *loaded(Kind::localDaemon).front().process};
  const fs::path autostart = roots.ownAutostart / HostAutostart::fileName;
  const fs::path state = HostPlaces::of(roots).folder;
  ASSERT_TRUE(fs::exists(autostart));
  ASSERT_TRUE(fs::exists(state));

  program.actions.uninstallInternalHelpers();
  waitFor([&] { return !fs::exists(autostart) && !fs::exists(state); });
  EXPECT_THAT(loaded(), IsEmpty());
  EXPECT_THAT(loaded(Kind::localDaemon), IsEmpty());
  for (const auto process : processes) EXPECT_FALSE(host::isAlive(std::to_string(process)));
  for (const Kind kind : {Kind::userAgent, Kind::localDaemon}) {
    EXPECT_TRUE(fs::exists(*kind.folderURL(roots) / "job.plist"));
  }
}

}  // namespace
}  // namespace mirvel
