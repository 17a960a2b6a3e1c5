#include "helpers/jobhost/LaunchctlHost.h"

#include <gmock/gmock.h>

#include <deque>
#include <functional>

#include "helpers/FakeJobHost.h"
#include "helpers/action/RequestHandler.h"
#include "helpers/hostdata/HostMessages.h"
#include "helpers/jobfiles/UserJobFiles.h"

namespace mirvel {
namespace {

using testing::ElementsAre;

/// Returns the prepared results one after the other, and records each call as a line. A call that hangs takes as long
/// as its limit permits, in virtual time.
class FakeTool final : public ProcessRunner {
 public:
  std::vector<std::string> calls;
  std::deque<ProcessResult> answers;   ///< when there are no more: success without output
  std::optional<std::string> hanging;  ///< the subcommand that hangs
  std::chrono::seconds hung{0};

  Result<ProcessResult> run(const std::string& program, const std::vector<std::string>& arguments,
                            std::optional<std::chrono::seconds> limit) override {
    std::string call = program;
    for (const auto& argument : arguments) call += '|' + argument;
    calls.push_back(call);
    if (arguments.front() == hanging) {
      hung += limit.value_or(std::chrono::hours(24 * 366));
      return Error{.code = Error::Code::Io, .message = "it hangs", .file = program};
    }
    if (answers.empty()) return ProcessResult();
    const ProcessResult answer = answers.front();
    answers.pop_front();
    return answer;
  }
};

const ProcessResult notLoaded{.exitStatus = 113, .complaints = "Could not find service \"a\" in domain"};

class LaunchctlHostTest : public testing::Test {
 protected:
  FakeTool tool;
  std::chrono::milliseconds waited{0};
  Cancellation none;
  LaunchctlHost host{{.runner = tool, .domain = "gui/501", .pause = [this](auto time) { waited += time; }}};
};

TEST_F(LaunchctlHostTest, LoadingIsABootstrapIntoTheDomain) {
  EXPECT_TRUE(host.load("/Users/x/Library/LaunchAgents/a b.plist"));
  EXPECT_THAT(tool.calls, ElementsAre("/bin/launchctl|bootstrap|gui/501|/Users/x/Library/LaunchAgents/a b.plist"));
  tool.answers = {{.exitStatus = 5, .complaints = "Bootstrap failed: 5: Input/output error\n"}};
  const auto failed = host.load("/a.plist");
  ASSERT_FALSE(failed);
  EXPECT_EQ(failed.error().text(), "/a.plist: launchd can't load the job: Bootstrap failed: 5: Input/output error");
}

TEST_F(LaunchctlHostTest, UnloadingWaitsUntilTheJobIsGone) {
  tool.answers = {{}, {.exitStatus = 36}, {}, {}, notLoaded};
  EXPECT_TRUE(host.unload("/a.plist", "org.example.a"));
  EXPECT_THAT(tool.calls,
              ElementsAre("/bin/launchctl|print|gui/501/org.example.a", "/bin/launchctl|bootout|gui/501/org.example.a",
                          "/bin/launchctl|print|gui/501/org.example.a", "/bin/launchctl|print|gui/501/org.example.a",
                          "/bin/launchctl|print|gui/501/org.example.a"));
  EXPECT_EQ(waited, 2 * LaunchctlHost::pollingInterval);
}

TEST_F(LaunchctlHostTest, UnloadingFailsIfTheJobStaysLoaded) {
  tool.answers = {notLoaded};
  EXPECT_TRUE(host.unload("/a.plist", "a"));
  EXPECT_EQ(tool.calls.size(), 1U);
  EXPECT_FALSE(host.unload("/a.plist", "a"));  // every query finds it
  EXPECT_GE(waited, longestStop);
}

TEST_F(LaunchctlHostTest, AToolThatHangsIsAnErrorOfTheOperation) {
  using std::chrono::minutes;
  const struct {
    const char* subcommand;
    std::function<Error()> act;
    minutes limit;
  } rows[] = {
      {"bootstrap", [&] { return host.load("/a.plist").error(); }, minutes(1)},
      {"print", [&] { return host.unload("/a.plist", "a").error(); }, minutes(1)},
      {"bootout", [&] { return host.unload("/a.plist", "a").error(); }, minutes(1)},
      {"print", [&] { return host.waitForEnd("a", minutes(1)).error(); }, minutes(1)},
      {"show", [&] { return host.log({.period = minutes(1), .searchString = "a"}, none).error(); }, minutes(10)},
  };
  for (const auto& row : rows) {
    tool.hanging = row.subcommand;
    tool.hung = {};
    const Error error = row.act();
    EXPECT_THAT(error.message, testing::EndsWith(": it hangs")) << row.subcommand;
    EXPECT_EQ(error.file, "") << "callers expect the job's file here, not the tool";
    EXPECT_EQ(tool.hung, row.limit) << row.subcommand;
  }
}

/// `bootout gui/501/` would end all jobs of the user.
TEST_F(LaunchctlHostTest, ALabelIsReadFromTheFileAndAnEmptyOneReachesNoTool) {
  const testdata::TemporaryFolder folder;
  EXPECT_FALSE(host.unload("/a.plist", ""));
  EXPECT_FALSE(host.waitForEnd("", std::chrono::seconds(0)));
  EXPECT_FALSE(host.unload(folder.path() / "missing.plist", std::nullopt));
  EXPECT_FALSE(host.unload(folder.write("a.plist", testdata::jobText("")), std::nullopt));
  EXPECT_THAT(tool.calls, testing::IsEmpty());
  tool.answers = {notLoaded};
  EXPECT_TRUE(host.unload(folder.write("a.plist", testdata::jobText("org.example.a")), std::nullopt));
  EXPECT_THAT(tool.calls, ElementsAre("/bin/launchctl|print|gui/501/org.example.a"));
}

TEST_F(LaunchctlHostTest, AJobThatWasLoadedFromAnotherFileStaysLoaded) {
  const testdata::TemporaryFolder folder;
  const std::string original = folder.write("original.plist", testdata::jobText("a"));
  const ProcessResult loaded{.output = "system/a = {\n\tactive count = 1\n\tpath = " + original + "\n\ttype = x\n}\n"};
  tool.answers = {loaded};
  EXPECT_TRUE(host.unload(folder.path() / "copy.plist", "a"));
  EXPECT_THAT(tool.calls, ElementsAre("/bin/launchctl|print|gui/501/a"));
  tool.answers = {loaded, {}, notLoaded};
  EXPECT_TRUE(host.unload(original, "a"));
  std::filesystem::remove(original);  // the file was moved
  tool.answers = {loaded, {}, notLoaded};
  EXPECT_TRUE(host.unload(folder.path() / "copy.plist", "a"));
  EXPECT_EQ(tool.calls.size(), 7U);
}

TEST_F(LaunchctlHostTest, UnloadFromUnloadsOnlyTheJobOfThatFile) {
  const ProcessResult loaded{.output = "system/a = {\n\tpath = /gone/a.plist\n}\n"};
  tool.answers = {loaded};
  EXPECT_TRUE(host.unloadFrom("/gone/b.plist", "a"));
  tool.answers = {notLoaded};
  EXPECT_TRUE(host.unloadFrom("/gone/a.plist", "a"));
  EXPECT_EQ(tool.calls.size(), 2U);
  tool.answers = {loaded, loaded, {}, notLoaded};
  EXPECT_TRUE(host.unloadFrom("/gone/a.plist", "a"));
  EXPECT_EQ(tool.calls.at(4), "/bin/launchctl|bootout|gui/501/a");
  EXPECT_FALSE(host.unloadFrom("/gone/a.plist", {})) << "the label is needed";
}

TEST_F(LaunchctlHostTest, AFileWithoutALabelCanBeDeleted) {
  const testdata::TemporaryFolder folder;
  UserJobFiles files{JobFolders({folder.path()})};
  RequestHandler handler({.files = files, .host = host, .uninstall = {}});
  const struct {
    std::optional<std::string> content;
    std::optional<int> kind;  ///< of a request that fails
  } rows[] = {{"damaged", {}}, {testdata::jobText(""), {}}, {"damaged", 4}, {{}, 2}, {{}, 4}};
  for (const auto& row : rows) {
    const auto file = folder.path() / "a.plist";
    std::filesystem::remove(file);
    if (row.content) folder.write("a.plist", *row.content);
    const char* const key = row.kind == 4 ? "path" : "deletePath";
    const auto reply = handler.handle({{"kind", row.kind.value_or(2)}, {key, file.string()}});
    EXPECT_EQ(reply.find("error") != nullptr, row.kind.has_value()) << &row - rows;
    EXPECT_EQ(std::filesystem::exists(file), row.content && row.kind) << &row - rows;
  }
  EXPECT_THAT(tool.calls, testing::IsEmpty());
}

TEST_F(LaunchctlHostTest, AJobHasEndedOnceLaunchdReportsHow) {
  struct Row {
    const char* output;
    bool hasEnded;
  };
  for (const Row& row : {Row{"\tstate = running\n\tlast exit code = (never exited)\n", false},
                         Row{"\tstate = not running\n\tlast exit code = 1\n", true},
                         Row{"\tstate = not running\n\tlast terminating signal = Killed: 9\n", true},
                         Row{"\tstate = spawn scheduled\n", false}}) {
    tool.answers = {{.output = row.output}};
    const auto ended = host.waitForEnd("a", std::chrono::seconds(0));
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->hasEnded, row.hasEnded) << row.output;
  }
  waited = {};
  const auto ended = host.waitForEnd("a", std::chrono::seconds(60));
  EXPECT_TRUE(ended && !ended->hasEnded);
  EXPECT_EQ(waited, std::chrono::seconds(60));
}

TEST_F(LaunchctlHostTest, TheLogIsFilteredByTheText) {
  tool.answers = {{.output = "Timestamp                       (process)[PID]    \n"
                             "2023-11-14 23:13:20.500000+0100  mac launchd[1]: a: started\n"
                             "\tmore of it\n"
                             "2023-11-14 17:13:21.000000-0500  mac tool[7]: done\n"
                             "2023-13-45 17:13:21.000000-0500  no date\n"}};
  const auto lines = host.log({.period = std::chrono::hours(4), .searchString = "odd\"la\\bel"}, none);
  EXPECT_THAT(tool.calls, ElementsAre("/usr/bin/log|show|--style|syslog|--info|--last|14400|--predicate|"
                                      "eventMessage CONTAINS[c] \"odd\\\"la\\\\bel\""));
  ASSERT_TRUE(lines);
  ASSERT_EQ(lines->lines.size(), 2U);
  EXPECT_EQ(lines->lines[0].seconds, 1700000000.5);
  EXPECT_EQ(lines->lines[0].message, "mac launchd[1]: a: started\n\tmore of it");
  EXPECT_EQ(lines->lines[1].seconds, 1700000001);
  tool.answers = {{.exitStatus = 64, .complaints = "log: bad predicate"}};
  EXPECT_FALSE(host.log({.period = std::chrono::hours(1), .searchString = "a"}, none));
}

}  // namespace
}  // namespace mirvel
