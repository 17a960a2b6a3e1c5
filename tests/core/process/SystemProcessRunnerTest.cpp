#include "core/process/SystemProcessRunner.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cerrno>

#include "core/process/FileDescriptor.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

Result<ProcessResult> shell(const std::string& script, std::size_t maximum = SystemProcessRunner::usualMaximum) {
  SystemProcessRunner runner({{"PATH", "/usr/bin:/bin"}, {"GREETING", "hello"}}, maximum);
  return runner.run("/bin/sh", {"-c", script, "name", "two words", ""});
}

TEST(SystemProcessRunnerTest, TheResultHasTheStatusAndBothOutputs) {
  const struct {
    std::string script;
    int status;
    std::string output, complaints;
  } rows[] = {
      {"echo out; echo err >&2; exit 3", 3, "out\n", "err\n"},
      {"printf '%s|' \"$0\" \"$@\"", 0, "name|two words||", ""},
      {"echo \"$GREETING $HOME\"", 0, "hello \n", ""},
      {"cat", 0, "", ""},
      {"kill -TERM $$", 143, "", ""},
      {"kill -PIPE $$", 141, "", ""},
      {"exec >&- 2>&-; exit 5", 5, "", ""},
  };
  const auto before = ::signal(SIGPIPE, SIG_IGN);  // isn't inherited
  for (const auto& row : rows) {
    const auto result = shell(row.script);
    ASSERT_TRUE(result) << result.error().text();
    EXPECT_EQ(result->exitStatus, row.status) << row.script;
    EXPECT_EQ(result->output, row.output) << row.script;
    EXPECT_EQ(result->complaints, row.complaints) << row.script;
  }
  ::signal(SIGPIPE, before);
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST(SystemProcessRunnerTest, StreamedOutputHasAnySizeUntilItIsStopped) {
  SystemProcessRunner runner({{"PATH", "/usr/bin:/bin"}}, 1000);
  const auto stream = [&](const char* script, std::size_t most) {
    std::size_t size = 0;
    const auto result = runner.stream("/bin/sh", {"-c", script}, [&](std::string_view piece) {
      size += piece.size();
      return size < most;
    });
    return std::pair(result ? result->exitStatus : -1,
                     result || result.error().code == Error::Code::Cancelled ? size : 0);
  };
  EXPECT_EQ(stream("head -c 500000 /dev/zero; exit 3", 1'000'000), std::pair(3, std::size_t{500'000}));
  EXPECT_GE(stream("yes", 100'000).second, 100'000U);
  EXPECT_EQ(stream("head -c 5000 /dev/zero >&2; exec sleep 1000", 1).second, 0U) << "too many complaints";
  int calls = 0;
  const auto quiet = runner.stream("/bin/sleep", {"1000"}, [&](std::string_view) { return ++calls < 3; });
  ASSERT_FALSE(quiet);
  EXPECT_EQ(quiet.error().code, Error::Code::Cancelled) << "a tool without output can be stopped, too";
}

TEST(SystemProcessRunnerTest, ProgramsThatCantBeStartedAreErrors) {
  const testdata::TemporaryFolder folder;
  SystemProcessRunner runner({});
  const std::vector<std::pair<std::string, Error::Code>> rows{
      {(folder.path() / "missing").string(), Error::Code::NotFound},
      {folder.write("plain", "text").string(), Error::Code::NotPermitted},
      {std::string("/bin/sh\0x", 9), Error::Code::BadArgument},
  };
  for (const auto& [program, code] : rows) {
    const auto result = runner.run(program, {});
    ASSERT_FALSE(result) << program;
    EXPECT_EQ(result.error().code, code) << result.error().text();
  }
  EXPECT_FALSE(runner.run("/bin/echo", {std::string("a\0b", 3)}));
}

TEST(SystemProcessRunnerTest, LongOutputsAreReadUpToTheLimit) {
  const std::string loop = "i=0; while [ $i -lt 3000 ]; do printf %0100d 1; printf %0100d 2 >&2; i=$((i+1)); done";
  const auto whole = shell(loop, 600000);
  ASSERT_TRUE(whole) << whole.error().text();
  EXPECT_EQ(whole->output.size(), 300000U);
  EXPECT_EQ(whole->complaints.size(), 300000U);
  const auto endless = shell("while :; do echo yes; done", 599999);
  ASSERT_FALSE(endless);
  EXPECT_EQ(endless.error().code, Error::Code::LimitExceeded);
}

TEST(SystemProcessRunnerTest, AToolThatDoesNotEndInTimeIsKilled) {
  SystemProcessRunner runner(Environment{{"PATH", "/usr/bin:/bin"}});
  for (const std::string script : {"exec sleep 600", "exec >&- 2>&- sleep 600"}) {
    const auto result = runner.run("/bin/sh", {"-c", script}, std::chrono::seconds(0));
    ASSERT_FALSE(result) << script;
    EXPECT_EQ(result.error().text(), "/bin/sh: it hasn't ended within 0 seconds");
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "it is left running";
  }
  const auto quick = runner.run("/bin/sh", {"-c", "echo done; exec >&- 2>&-; exit 3"}, std::chrono::hours(1));
  ASSERT_TRUE(quick);
  EXPECT_EQ(quick->output, "done\n");
  EXPECT_EQ(quick->exitStatus, 3);
}

TEST(SystemProcessRunnerTest, ABackgroundProcessIsntWaitedFor) {
  const testdata::TemporaryFolder folder;
  const std::string gate = (folder.path() / "gate").string();
  ASSERT_EQ(::mkfifo(gate.c_str(), 0600), 0);
  const FileDescriptor open(::open(gate.c_str(), O_RDWR | O_CLOEXEC));
  const auto result = shell("(read line < " + gate + ") & echo done");
  EXPECT_EQ(::write(open.number(), "go\n", 3), 3);
  ASSERT_TRUE(result) << result.error().text();
  EXPECT_EQ(result->output, "done\n");
}

}  // namespace
}  // namespace mirvel
