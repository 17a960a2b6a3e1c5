// The processes of jobs: how they are stopped, what happens after the host is killed, and failures to start them.

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>

#include "core/process/ProcessStatus.h"
#include "helpers/host/HostFixture.h"
#include "helpers/host/JobProcess.h"
#include "helpers/host/JobRun.h"

namespace mirvel::host {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class HostRuns : public HostFixture {
 protected:
  std::string quoted(const char* name) const { return "'" + (folder.path() / name).string() + "'"; }
  std::size_t records() const {
    const fs::path runs = places.folder / "runs";
    return fs::exists(runs) ? static_cast<std::size_t>(std::distance(fs::directory_iterator(runs), {})) : 0;
  }
};

void killHost(const std::string& process) {
  ::kill(std::stoi(process), SIGKILL);
  ASSERT_TRUE(ends(process));
}

TEST_F(HostRuns, SendsSigtermToTheWholeGroupBeforeItKills) {
  Signpost ready(folder.path() / "ready");
  const std::string tidy = "trap 'echo tidied > " + quoted("tidied") + "; exit' TERM; ";
  load(job("family", "(" + tidy + "echo > " + ready.quoted() + "; sleep 1000 & wait) & wait", {{"RunAtLoad", true}}));
  ready.line();
  unload("family");
  EXPECT_EQ(testdata::bytes(folder.path() / "tidied"), "tidied\n");
  EXPECT_EQ(records(), 0U);
}

TEST_F(HostRuns, LeavesOtherSessionsRunningWhenTheJobEndsByItself) {
  Signpost ready(folder.path() / "ready");
  const std::string go = Signpost::makePipe(folder.path() / "go").string();
  load(job("starter",
           "setsid sh -c 'echo $$ > " + go + "; exec sleep 1000' & read -r line < " + go + "; echo $line > " +
               ready.quoted(),
           {{"RunAtLoad", true}}));
  const std::string process = ready.line();
  EXPECT_TRUE(hasEnded("starter"));
  unload("starter");
  EXPECT_TRUE(isAlive(process)) << "as with launchd, it isn't part of the job any more";
  ::kill(std::stoi(process), SIGKILL);
}

TEST_F(HostRuns, NamesTheRunningProcessesAfterTheTimeLimit) {
  Signpost ready(folder.path() / "ready");
  const auto file = stubbornJob("stubborn", ready);
  load(file);
  const std::string process = ready.words().front();
  const auto unloaded = client.ask(hostdata::Unload{.label = "stubborn", .seconds = 0});
  ASSERT_FALSE(unloaded);
  EXPECT_EQ(unloaded.error().code, Error::Code::StillRunning);
  EXPECT_THAT(unloaded.error().text(), HasSubstr("process " + process));
  const auto again = embedded.load(file);
  ASSERT_FALSE(again);
  EXPECT_EQ(again.error().code, Error::Code::StillRunning);
  EXPECT_NE(ready.words().front(), process) << "the job is loaded once its last run has ended";
  EXPECT_FALSE(isAlive(process));
  (void)client.ask(hostdata::Unload{.label = "stubborn", .seconds = 0});
  ASSERT_FALSE(embedded.load(file));
  EXPECT_TRUE(embedded.unload(file, "stubborn")) << "which cancels the pending load";
  EXPECT_THAT(saved(), IsEmpty());
  const auto log = messagesOf("stubborn");
  EXPECT_THAT(log, testing::IsSupersetOf({"stopping it (SIGTERM)", "not ended in time: killing it (SIGKILL)"}));
  EXPECT_THAT(log, Contains(HasSubstr("was ended by signal 9")));
}

TEST_F(HostRuns, AnUnloadDoesNotWaitForTheNextJobOfTheLabel) {
  const auto first = job("same", "true"), second = folder.write("jobs/second.plist", testdata::bytes(first));
  fs::create_directories(places.folder);
  ASSERT_TRUE(LoadedJobs(places.loadedJobs()).write({first, second}));
  startNext();
  const auto path = [&] { return status().empty() ? "" : status().front().path; };
  EXPECT_EQ(path(), first);
  const auto unloaded = client.ask(hostdata::Unload{.path = first.string(), .seconds = 0});
  EXPECT_TRUE(unloaded) << unloaded.error().text();
  EXPECT_EQ(path(), second);
}

TEST_F(HostRuns, StopsTheRunsOfAKilledHostBeforeItStartsTheirJobs) {
  for (const bool isStubborn : {false, true}) {
    const std::string label = isStubborn ? "stubborn" : "willing";
    Signpost ready(folder.path() / label);
    load(job(label,
             std::string(isStubborn ? "trap '' TERM; " : "") +
                 "sleep 1000 & group=$!; setsid sleep 1000 & session=$!; env -i sleep 1000 & "
                 "echo $PPID $$ $group $session $! > " +
                 ready.quoted() + "; wait",
             {{"RunAtLoad", true}, {"ExitTimeOut", 1}}));
    const auto before = ready.words();
    ASSERT_EQ(before.size(), 5U);
    killHost(before[0]);
    startNext();
    const auto after = ready.words();
    EXPECT_NE(after[0], before[0]);
    for (const auto& process : before) EXPECT_FALSE(isAlive(process)) << process;
    unload(label);
    for (const auto& process : after) EXPECT_EQ(isAlive(process), process == after[0]) << process;
    EXPECT_THAT(messagesOf(label), Contains(HasSubstr("stopping a run that was left by a job host that was killed")));
  }
  EXPECT_EQ(records(), 0U);
}

TEST_F(HostRuns, StopsTheRunsOfAKilledHostWhoseJobIsNotLoaded) {
  Signpost ready(folder.path() / "ready");
  load(job("gone", "sleep 1000 & echo $PPID $! > " + ready.quoted() + "; wait", {{"RunAtLoad", true}}));
  const auto before = ready.words();
  killHost(before[0]);
  fs::remove(places.folder / "loaded.plist");
  unload("gone");
  EXPECT_FALSE(isAlive(before[1]));
  EXPECT_THAT(status(), IsEmpty());
}

TEST_F(HostRuns, InheritsNeitherLimitsNorClosedStandardFiles) {
  const rlim_t little = 64 << 10;
  // In the shell that becomes the host, so that the limits don't affect this process.
  const auto started =
      runner.run("/bin/sh", {"-c", "ulimit -S -f 8; ulimit -S -n 40; umask 077; exec nice -n 19 '" MIRVEL_HOST
                                   "' --detach --root '" +
                                       folder.path().string() + "' <&- >&- 2>&-"});
  ASSERT_TRUE(started);
  ASSERT_EQ(started->exitStatus, 0);
  load(job("free",
           "ulimit -S -f; head -c " + std::to_string(2 * little) + " /dev/zero > " + quoted("big") + "; umask; nice",
           {{"RunAtLoad", true}}));
  EXPECT_TRUE(hasEnded("free"));
  const std::string niceValue = ::geteuid() == 0 ? "0" : "19";  // only root can lower it
  EXPECT_THAT(messagesOf("free"), ElementsAre("started", "unlimited", "0077", niceValue, "exited with 0"))
      << "the umask is the user's own";
  EXPECT_EQ(fs::file_size(folder.path() / "big"), 2 * little);
}

TEST(JobProcess, ReportsAMomentaryShortageAsLimitExceeded) {
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  rlimit none = before;
  none.rlim_cur = 3;  // the standard files
  ProcessPlan plan;
  plan.program = "/bin/true";
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
  const auto started = JobProcess::start(plan, {});
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
  ASSERT_FALSE(started);
  EXPECT_EQ(started.error().code, Error::Code::LimitExceeded);
}

TEST(RunRecords, AreValidForOneBootOnly) {
  const testdata::TemporaryFolder folder;
  const RunRecords records(folder.path() / "runs");
  const JobRun run{.token = "mark", .leader = 42, .start = 4242, .isLeaderAlone = true};
  ASSERT_TRUE(records.write({.label = "job", .file = "/job.plist", .run = run}));
  ASSERT_EQ(records.read().size(), 1U);
  const RunRecord read = records.read().front();
  EXPECT_EQ(read.label, "job");
  EXPECT_EQ(read.file, "/job.plist");
  EXPECT_EQ(read.run.token, "mark");
  EXPECT_EQ(read.run.leader, 42);
  EXPECT_EQ(read.run.start, 4242);
  EXPECT_TRUE(read.run.isLeaderAlone);
  folder.write("runs/other",
               testdata::jobText("other", {{"Boot", "another start"}, {"Process", ::getpid()}, {"Start", 1}}));
  folder.write("runs/garbage", "garbage");
  EXPECT_EQ(records.read().size(), 1U);
  EXPECT_FALSE(fs::exists(folder.path() / "runs" / "other"));
  EXPECT_FALSE(fs::exists(folder.path() / "runs" / "garbage"));
  records.remove(run);
  EXPECT_THAT(records.read(), IsEmpty());
}

TEST(JobRun, ConsistsOfProcessesWithItsStartTimeOrToken) {
  const pid_t parent = ::getppid();
  const std::int64_t start = ProcessStatus::of(parent).value_or(ProcessStatus()).start;
  ASSERT_NE(start, 0);
  const struct {
    JobRun run;
    bool isFound;
  } rows[] = {
      {{.token = "none", .leader = parent, .start = start, .isLeaderAlone = true}, true},
      {{.token = "none", .leader = parent, .start = start - 1, .isLeaderAlone = true}, false},
      {{.token = "none", .leader = parent, .start = start + 1, .isLeaderAlone = true}, false},
      {{.token = "none", .leader = 0, .start = 0, .isLeaderAlone = false}, false},
      {{.token = "", .leader = 0, .start = 0, .isLeaderAlone = false}, false},
  };
  for (const auto& row : rows) {
    const auto found = processesOf(row.run, Reach::Everything);
    EXPECT_EQ(std::count(found.begin(), found.end(), parent), row.isFound ? 1 : 0) << row.run.start;
  }
}

}  // namespace
}  // namespace mirvel::host
