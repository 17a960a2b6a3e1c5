#pragma once

#include <gmock/gmock.h>

#include <filesystem>

#include "core/app/Program.h"
#include "core/base/ThreadWorkQueue.h"
#include "core/catalogue/Launchd.h"
#include "core/process/SystemProcessRunner.h"
#include "helpers/hostdata/HostClient.h"
#include "helpers/jobhost/EmbeddedHost.h"
#include "helpers/privileged/SystemHelperConnections.h"
#include "support/FakeFolderMonitors.h"
#include "support/FakeInterface.h"
#include "support/FakeLoginItems.h"
#include "support/FakeWorkspace.h"
#include "support/JobText.h"
#include "support/RecordingConsole.h"
#include "support/TestData.h"
#include "support/ThreadQueue.h"

namespace mirvel::testdata {

/// The program's logic with the real helpers and the real host, on an empty machine below a temporary folder.
class RunningJobsFixture : public testing::Test {
 protected:
  ~RunningJobsFixture() override {
    EXPECT_THAT(interface.errors, testing::IsEmpty());
    EXPECT_TRUE(host.quit());
    EXPECT_TRUE(rootsHost.quit());
  }

  std::shared_ptr<Launchd> newJob(Kind kind, const propertylist::Dictionary& keys) {
    auto job = Launchd::read(jobText("job", keys), URL::address("new"), kind, {}, console);
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
    EXPECT_EQ(bytes(job->url.path()), *job->plistData());
  }
  /// The jobs that are loaded in the host for this kind: the user's or root's.
  std::vector<HostedJobStatus> loaded(Kind kind = Kind::userAgent) {
    const Roots hosts = kind == Kind::userAgent ? roots : Roots::below(folder.path() / "root");
    const auto status = HostClient(HostPlaces::of(hosts).socket).status();
    return status ? *status : std::vector<HostedJobStatus>();
  }

  const TemporaryFolder folder;
  const std::filesystem::path output = folder.path() / "output";
  const Roots roots = Roots::below(folder.path());
  const Environment environment{{"PATH", "/usr/bin:/bin"}};
  Foundation foundation{roots, environment, {}, "en"};
  ThreadQueue queue;
  ThreadWorkQueue background{"Authorisation"};
  FakeInterface interface { foundation.defaults, foundation.localize };
  FakeWorkspace workspace;
  FakeFolderMonitors monitors;
  SystemProcessRunner runner{environment};
  FakeLoginItems loginItems;
  RecordingConsole console;
  SystemClock clock;
  EmbeddedHost host{EmbeddedHost::below(MIRVEL_HOST, folder.path()), runner};
  EmbeddedHost rootsHost{EmbeddedHost::below(MIRVEL_HOST, folder.path() / "root"), runner};
  SystemHelperConnections helpers{{.queue = queue,
                                   .background = background,
                                   .programs = HelperPrograms::in(std::filesystem::path(MIRVEL_ACTION).parent_path(),
                                                                  roots, environment, folder.path())}};
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

}  // namespace mirvel::testdata
