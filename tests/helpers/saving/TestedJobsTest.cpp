// Tests of commands with the real helpers and the real host.

#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "core/process/Commands.h"
#include "core/runs/TestRun.h"
#include "helpers/host/Signpost.h"
#include "helpers/saving/RunningJobsFixture.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using host::Signpost;
using propertylist::Array;
using propertylist::Dictionary;
using testing::IsEmpty;
using testing::StartsWith;
using State = TestRun::State;

class TestedJobsTest : public testdata::RunningJobsFixture {
 protected:
  void start(const std::string& script, Dictionary keys = {}, Kind kind = Kind::userAgent) {
    if (!keys.find("Program")) keys.set("ProgramArguments", Array{"/bin/sh", "-c", script});
    test->start(*newJob(kind, keys));
  }
  void waitForEnd() {
    waitFor([this] { return !test->isBusy(); });
  }
  /// Waits until nothing of a test is left: neither a loaded job nor a file.
  void expectNothingLeft(Kind kind = Kind::userAgent) {
    const fs::path tests =
        kind == Kind::userAgent ? roots.applicationSupport / "tests" : folder.path() / "mirvel-tests";
    waitFor([&] { return loaded(kind).empty() && fs::is_empty(tests); });
    EXPECT_FALSE(fs::exists(roots.ownAutostart)) << "a test isn't started at login";
  }
  /// The helper that acts as the user.
  static pid_t helper() {
    for (const auto& entry : fs::directory_iterator("/proc")) {
      std::ifstream stat(entry.path() / "stat");
      std::string process, name, state, parent;
      if (stat >> process >> name >> state >> parent && name == "(mirvel-action)" &&
          parent == std::to_string(::getpid()))
        return std::stoi(process);
    }
    throw std::runtime_error("there is no helper");
  }

  std::unique_ptr<TestRun> test = std::make_unique<TestRun>(
      TestRun::Setup{program.actions, program.repairs, queue, foundation.localize, foundation.roots});
};

TEST_F(TestedJobsTest, ACommandRunsAsTheJobWouldAndItsVerdictIsTheTruth) {
  fs::create_directories(folder.path() / "work");
  const struct {
    std::string script;
    Dictionary keys;
    std::string verdict;
    std::string output;
  } rows[] = {
      {"echo out; echo err >&2; printf end", {}, "Exited with code 0 after ", "out\nerr\nend"},
      {"exit 3", {}, "Exited with code 3 after ", ""},
      {"exit 78", {}, "Exited with code 78 after ", ""},
      {"echo out; kill -SEGV $$", {}, "Ended by signal 11 (segmentation fault) after ", "out\n"},
      {"pwd; umask; ulimit -n; echo $FRUIT",
       {{"WorkingDirectory", (folder.path() / "work").string()},
        {"Umask", 27},
        {"SoftResourceLimits", Dictionary{{"NumberOfFiles", 77}}},
        {"EnvironmentVariables", Dictionary{{"FRUIT", "pear"}}},
        {"KeepAlive", true},
        {"Disabled", true},
        {"StandardOutPath", (folder.path() / "out").string()},
        {"StartInterval", 1}},
       "Exited with code 0 after ",
       (folder.path() / "work").string() + "\n0033\n77\npear\n"},
      {"", {{"Program", "/no/such"}}, "Couldn’t be started: the program “/no/such” doesn’t exist", ""},
      {"true",
       {{"WorkingDirectory", "/no/such"}},
       "Couldn’t be started: the working directory “/no/such” doesn’t exist",
       ""},
  };
  for (const auto& row : rows) {
    start(row.script, row.keys);
    waitForEnd();
    EXPECT_THAT(test->verdict(), StartsWith(row.verdict)) << row.script << test->details();
    EXPECT_EQ(test->beginning(), row.output) << row.script;
  }
  EXPECT_FALSE(fs::exists(folder.path() / "out"));
  test.reset();
  expectNothingLeft();
}

TEST_F(TestedJobsTest, WhatHangsIsSeenWhileItRunsAndStopped) {
  Signpost post(folder.path() / "post");
  start("echo $$ > " + post.quoted() + "; echo before; sleep 1000; echo after");
  waitFor([this] { return test->beginning() == "before\n"; });
  const std::string process = post.line();
  test->stop();
  EXPECT_THAT(test->verdict(), StartsWith("Stopped after "));
  EXPECT_TRUE(host::ends(process));
  expectNothingLeft();
}

TEST_F(TestedJobsTest, GrandchildrenEndWithTheSheetEvenInASessionOfTheirOwn) {
  if (!isProgram("/usr/bin/setsid")) GTEST_SKIP() << "there is no setsid";
  for (const bool isParentWaiting : {true, false}) {
    Signpost post(folder.path() / (isParentWaiting ? "waiting" : "leaving"));
    start("setsid sh -c 'echo $$ > " + (folder.path() / (isParentWaiting ? "waiting" : "leaving")).string() +
              "; echo started; exec sleep 1000' & " + (isParentWaiting ? "wait" : "sleep 0.1"),
          {{"AbandonProcessGroup", true}});
    const std::string process = post.line();
    waitFor([this] { return test->beginning() == "started\n"; });
    if (!isParentWaiting) waitForEnd();
    EXPECT_TRUE(host::isAlive(process));
    test = std::make_unique<TestRun>(
        TestRun::Setup{program.actions, program.repairs, queue, foundation.localize, foundation.roots});
    expectNothingLeft();
    EXPECT_TRUE(host::ends(process));
  }
}

TEST_F(TestedJobsTest, EndlessOutputFillsNeitherDiskNorMemory) {
  start("exec yes");
  waitFor([this] { return test->rest().find("left out") != std::string::npos; });
  std::uintmax_t size = 0;
  for (const auto& entry : fs::recursive_directory_iterator(roots.applicationSupport)) {
    if (entry.is_regular_file()) size += entry.file_size();
  }
  EXPECT_LT(size, 100'000U);
  EXPECT_LE(test->beginning().size(), 256U << 10U);
  test->stop();
  expectNothingLeft();
}

TEST_F(TestedJobsTest, AKilledHelperLeavesNothing) {
  Signpost post(folder.path() / "post");
  start("echo $$ > " + post.quoted() + "; exec sleep 1000");
  const std::string process = post.line();
  ASSERT_EQ(::kill(helper(), SIGKILL), 0);
  waitForEnd();
  EXPECT_EQ(test->verdict(), "Couldn’t communicate with the helper tool");
  EXPECT_TRUE(host::ends(process)) << "the host stops it";
  start("echo again");
  waitForEnd();
  EXPECT_EQ(test->beginning(), "again\n");
  test->stop();
  test.reset();
  expectNothingLeft();
}

TEST_F(TestedJobsTest, AKilledHostLeavesNothing) {
  Signpost post(folder.path() / "post");
  start("echo $$ $PPID > " + post.quoted() + "; echo before; exec sleep 1000");
  const auto processes = post.words();
  waitFor([this] { return test->beginning() == "before\n"; });
  ASSERT_EQ(::kill(std::stoi(processes.at(1)), SIGKILL), 0);
  waitForEnd();
  EXPECT_EQ(test->verdict(), "It isn’t known how it ended");
  EXPECT_EQ(test->beginning(), "before\n");
  test.reset();
  expectNothingLeft();
  EXPECT_TRUE(host::ends(processes.at(0)));
}

TEST_F(TestedJobsTest, ADaemonIsTestedByRootAsItsUser) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can be another user";
  ASSERT_EQ(::chmod(folder.path().c_str(), 0711), 0);
  start("id -un; echo error >&2", {{"UserName", "nobody"}}, Kind::localDaemon);
  waitForEnd();
  EXPECT_THAT(test->verdict(), StartsWith("Exited with code 0 after "));
  EXPECT_EQ(test->beginning(), "nobody\nerror\n");
  start("", {{"Program", "/bin/ls"}, {"UserName", "no such user"}}, Kind::localDaemon);
  waitForEnd();
  EXPECT_EQ(test->verdict(), "Couldn’t be started: there is no user “no such user”");
  start("pwd", {{"RootDirectory", "/"}}, Kind::localDaemon);
  waitForEnd();
  EXPECT_EQ(test->beginning(), "/\n");
  test.reset();
  expectNothingLeft(Kind::localDaemon);
}

}  // namespace
}  // namespace mirvel
