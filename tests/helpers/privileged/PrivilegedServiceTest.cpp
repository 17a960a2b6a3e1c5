#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <future>

#include "core/base/ThreadWorkQueue.h"
#include "core/process/SystemProcessRunner.h"
#include "helpers/FakeJobHost.h"
#include "helpers/privileged/ActingAs.h"
#include "helpers/privileged/Authorisation.h"
#include "helpers/privileged/Listener.h"
#include "helpers/privileged/PrivilegedOptions.h"
#include "helpers/privileged/SystemHelperConnections.h"
#include "support/RecordingConsole.h"
#include "support/ThreadQueue.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using propertylist::Dictionary;
using testing::ElementsAre;

constexpr uid_t nobody = 65534;

TEST(PrivilegedOptionsTest, TheUserComesFromTheElevationAndOnlyRootMayGiveAnotherRoot) {
  struct Row {
    std::vector<std::string> words;
    Environment environment;
    uid_t realUser;
    std::optional<uid_t> user;
    std::string root;
  };
  const std::vector<Row> rows{
      {{}, {}, 0, 0, ""},
      {{"--user", "501"}, {}, 0, 501, ""},
      {{}, {{"PKEXEC_UID", "1000"}}, 0, 1000, ""},
      {{"--user", "0"}, {{"PKEXEC_UID", "1000"}}, 0, 1000, ""},
      {{"--root", "/tmp/x"}, {}, 0, 0, "/tmp/x"},
      {{"--root", "/tmp/x"}, {{"PKEXEC_UID", "1000"}}, 0, {}, ""},
      {{"--root", "/tmp/x"}, {{"PKEXEC_UID", "0"}}, 0, {}, ""},
      {{"--root", "/tmp/x", "--user", "501"}, {}, 0, {}, ""},
      {{"--root", "/tmp/x", "--user", "0"}, {}, 501, {}, ""},
      {{"--root", "/tmp/x", "--user", "501"}, {}, 501, 501, "/tmp/x"},
      {{"--agents", "/a", "--installed", "/b", "--installed", "/c"}, {{"PKEXEC_UID", "1000"}}, 0, 1000, ""},
      {{"--agents", "a"}, {}, 0, {}, ""},
      {{"--root", "x"}, {}, 0, {}, ""},
      {{"--root"}, {}, 0, {}, ""},
      {{"--user", "-1"}, {}, 0, {}, ""},
      {{"--user", "4294967295"}, {}, 0, {}, ""},
      {{"--user", "5 "}, {}, 0, {}, ""},
      {{}, {{"PKEXEC_UID", "root"}}, 0, {}, ""},
      {{"--process", "12:34"}, {}, 0, 0, ""},
      {{"--process", "12"}, {}, 0, {}, ""},
      {{"--shell", "/bin/sh"}, {}, 0, {}, ""},
  };
  for (const auto& row : rows) {
    const auto options = PrivilegedOptions::read(row.words, row.environment, row.realUser);
    const std::string words = testing::PrintToString(row.words) + testing::PrintToString(row.environment);
    ASSERT_EQ(static_cast<bool>(options), row.user.has_value()) << words;
    if (!options) continue;
    EXPECT_EQ(options->user, row.user) << words;
    EXPECT_EQ(options->root.value_or(""), row.root) << words;
  }
}

TEST(AuthorisationTest, OnlyTheExactSecretLetsARequestThrough) {
  const auto secret = Authorisation::make();
  ASSERT_TRUE(secret);
  ASSERT_EQ(secret->bytes().size(), 32U);
  EXPECT_NE(Authorisation::make()->bytes(), secret->bytes());
  testdata::RecordingConsole console;
  const auto admits = admission(*secret, console);
  std::string wrong = secret->bytes();
  wrong.back() = static_cast<char>(wrong.back() ^ 1);
  for (const Dictionary& request :
       {Dictionary{}, Dictionary{{"authData", propertylist::Data{}}},
        Dictionary{{"authData", propertylist::Data{wrong}}}, Dictionary{{"authData", secret->bytes()}},
        Dictionary{{"authData", propertylist::Data{secret->bytes() + "x"}}},
        Dictionary{{"authData", propertylist::Data{secret->bytes().substr(1)}}}}) {
    EXPECT_FALSE(admits(request));
  }
  EXPECT_EQ(console.logged.size(), 6U);
  EXPECT_TRUE(admits({{"authData", propertylist::Data{secret->bytes()}}}));
}

TEST(ActingAsTest, OnlyTheThreadItselfHasTheRightsOfTheUser) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can act as another user";
  std::promise<void> acts;
  auto seen = std::async(std::launch::async, [&] {
    acts.get_future().wait();
    return ::geteuid();
  });
  {
    const ActingAs acting(nobody);
    EXPECT_TRUE(acting);
    EXPECT_EQ(::geteuid(), nobody);
    acts.set_value();
    EXPECT_EQ(seen.get(), 0U);
  }
  EXPECT_EQ(::geteuid(), 0U);
  EXPECT_EQ(::getegid(), 0U);
}

TEST(ListenerTest, OnlyTheRequestingProcessIsAcceptedAndTheFolderIsRemoved) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can act as another user";
  const testdata::TemporaryFolder root;
  ASSERT_EQ(::chmod(root.path().c_str(), 0755), 0);
  testdata::RecordingConsole console;
  {
    auto listener = Listener::make(root.path(), {.user = ::geteuid(), .process = ProcessIdentity::ofThisProcess()});
    ASSERT_TRUE(listener) << listener.error().text();
    const auto connectAs = [&](uid_t user) {
      const pid_t child = ::fork();
      if (child == 0) ::_exit(::setuid(user) == 0 && connectTo(listener->address()) ? 0 : 1);
      int status = 0;
      return ::waitpid(child, &status, 0) == child && WEXITSTATUS(status) == 0;
    };
    EXPECT_FALSE(connectAs(nobody));
    ASSERT_EQ(::chmod(listener->address().c_str(), 0666), 0);  // even if everyone could connect
    EXPECT_TRUE(connectAs(nobody));
    EXPECT_TRUE(connectAs(0));  // another process of the same user, and earlier than the allowed one
    EXPECT_FALSE(listener->accept(std::chrono::milliseconds(20), console));
    EXPECT_THAT(console.logged, testing::SizeIs(2));
    const auto ours = connectTo(listener->address());
    EXPECT_TRUE(listener->accept(std::chrono::seconds(20), console));
    EXPECT_FALSE(connectTo(listener->address()));  // only one connection is accepted
  }
  EXPECT_TRUE(fs::is_empty(root.path()));
}

TEST(ElevationTest, EachMethodHasItsCommand) {
  const std::string program = "/opt/it's \"here\"/mirvel-privileged";
  const std::string process = ProcessIdentity::ofThisProcess().text();
  using Method = Elevation::Method;
  EXPECT_THAT((Elevation{Method::None}.command(program, {"--root", "/r"})), ElementsAre(program, "--root", "/r"));
  EXPECT_THAT((Elevation{Method::Pkexec, "/usr/bin/pkexec"}.command(program, {})),
              ElementsAre("/usr/bin/pkexec", "--disable-internal-agent", program));
  EXPECT_THAT(
      (Elevation{Method::Osascript, "/usr/bin/osascript"}.command(program, {"--user", "501"})),
      ElementsAre("/usr/bin/osascript", "-e",
                  R"x(do shell script "\"/opt/it's \\\"here\\\"/mirvel-privileged\" \"--user\" \"501\" \"--process\" )x"
                  R"x(\")x" +
                      process + R"x(\"" without altering line endings with administrator privileges)x"));
}

/// The application's connections with the queues that they need.
struct Connections {
  explicit Connections(HelperPrograms programs)
      : m_connections({.queue = queue, .background = m_background, .programs = std::move(programs)}) {}

  void connect(HelperConnections::PrivilegedReply reply, HelperConnection::Failure failure) {
    m_connections.connectToPrivileged(std::move(reply), std::move(failure));
  }

  testdata::ThreadQueue queue;

 private:
  ThreadWorkQueue m_background{"background"};
  SystemHelperConnections m_connections;
};

/// An elevation with a shell script as its tool.
class ToolTest : public testing::Test {
 protected:
  testdata::TemporaryFolder folder;
  std::shared_ptr<wire::Reaper> reaper = std::make_shared<wire::Reaper>(std::chrono::seconds(20));

  std::string makeTool(const std::string& script) const {
    const std::string tool = folder.write("tool", "#!/bin/sh\n" + script);
    EXPECT_EQ(::chmod(tool.c_str(), 0755), 0);
    return tool;
  }
  Result<std::shared_ptr<PrivilegedStart>> begin(Elevation::Method method, const std::string& script) {
    const std::string tool = makeTool(script);
    return PrivilegedStart::begin({.method = method, .tool = tool},
                                  method == Elevation::Method::None ? tool : "/helper", {}, reaper);
  }
};

TEST_F(ToolTest, FailuresStateTheirReason) {
  using Method = Elevation::Method;
  using Refusal = HelperConnections::Refusal;
  constexpr const char* pkexecFails = "echo 'Error executing command as another user: ";
  struct Row {
    Method method;
    std::string script;
    bool isError, isCancelled;
    Refusal refusal = Refusal::Unknown;
  };
  const std::vector<Row> rows{
      {Method::Pkexec, "exit 126", false, true},
      {Method::Pkexec, std::string(pkexecFails) + "Not authorized' >&2; exit 127", false, false,
       Refusal::NotAuthorised},
      {Method::Pkexec, std::string(pkexecFails) + "No authentication agent found.' >&2; exit 127", false, false,
       Refusal::NoAgent},
      {Method::Pkexec, "echo 'Error getting authority: Could not connect' >&2; exit 127", false, false,
       Refusal::NoService},
      {Method::Pkexec, "echo 'pkexec must be setuid root' >&2; exit 127", true, false},
      {Method::Pkexec, "echo \"mirvel-privileged: can't\" >&2; exit 2", true, false},
      {Method::Pkexec, "test -z \"$SHELL$XDG_RUNTIME_DIR$HOME\" && test \"$LC_ALL\" = C && exit 126", false, true},
      {Method::Pkexec, "echo hello; exec cat", true, false},
      {Method::Osascript, "echo 'execution error: User canceled. (-128)' >&2; exit 1", false, true},
      {Method::Osascript, "echo 'The user name or password was incorrect. (-60005)' >&2; exit 1", false, false,
       Refusal::NotAuthorised},
      {Method::Osascript, "exit 126", true, false},
      {Method::Osascript, "echo /run/mirvel/socket", true, false},
      {Method::Osascript, "echo /run/mirvel/socket; echo xyz", true, false},
      {Method::Osascript, "echo /nowhere/socket; echo 00ff", true, false},
      {Method::None, "exit 126", true, false},
      {Method::None, "kill -9 $$", true, false},
  };
  for (const auto& row : rows) {
    const auto start = begin(row.method, row.script);
    ASSERT_TRUE(start) << row.script;
    const auto elevated = (*start)->finish();
    ASSERT_EQ(!elevated, row.isError) << row.script;
    if (!elevated) continue;
    EXPECT_FALSE(elevated->socket) << row.script;
    EXPECT_EQ(elevated->isCancelled, row.isCancelled) << row.script;
    EXPECT_EQ(elevated->refusal, row.refusal) << row.script;
  }
}

TEST_F(ToolTest, QuittingWhileTheUserIsAskedWaitsForNothing) {
  for (const char* command : {":", "printf he", "printf '\\0\\0\\0\\200part of a greeting'", "exec <&- >&-"}) {
    const fs::path mark = folder.path() / "done";
    fs::remove(mark);
    const std::string tool = makeTool(std::string(command) + "\n: >'" + mark.string() + "'\nexec sleep 600\n");
    {
      Connections connections({.action = {}, .privileged = "/helper", .elevation = {Elevation::Method::Pkexec, tool}});
      bool hasFailed = false;  // by a closed connection: the tool is ended, perhaps before it makes the mark
      connections.connect([](const auto& answer) { EXPECT_FALSE(answer.connection); },
                          [&](const Error&) { hasFailed = true; });
      EXPECT_TRUE(connections.queue.runUntil([&] { return hasFailed || fs::exists(mark); })) << command;
    }
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "the tool has ended, too";
  }
}

TEST_F(ToolTest, AMachineWithoutTheToolIsARefusal) {
  Connections connections(
      {.action = {}, .privileged = "/helper", .elevation = {Elevation::Method::Pkexec, "/nowhere/pkexec"}});
  std::optional<HelperConnections::Refusal> refusal;
  connections.connect([&](auto answer) { refusal = answer.refusal; },
                      [&](const Error& error) { FAIL() << error.text(); });
  EXPECT_FALSE(refusal) << "later, not from within the call";
  ASSERT_TRUE(connections.queue.runUntil([&] { return refusal.has_value(); }));
  EXPECT_EQ(refusal, HelperConnections::Refusal::NoTool);
}

TEST(HelperProgramsTest, StartedByHandTheySayWhatTheyAreFor) {
  SystemProcessRunner runner(Environment{{"PATH", "/usr/bin:/bin"}});
  const struct {
    const char* command;
    const char* complaint;
  } rows[] = {
      {"exec '" MIRVEL_PRIVILEGED "' --root /tmp",
       "mirvel-privileged: Mirvel starts this program as root when it needs it\n"},
      {"exec '" MIRVEL_ACTION "' 3</dev/null",
       "mirvel-action: Mirvel starts this program when it needs it; it does nothing by itself.\n"},
  };
  for (const auto& row : rows) {
    const auto result = runner.run("/bin/sh", {"-c", row.command});
    ASSERT_TRUE(result) << row.command;
    EXPECT_EQ(result->exitStatus, 2) << row.command;
    EXPECT_EQ(result->complaints, row.complaint);
  }
}

TEST(PrivilegedServiceTest, TheProgramServesItsUserWithinItsLimitsAndEnds) {
  if (::geteuid() != 0) GTEST_SKIP() << "the program is for root";
  const testdata::TemporaryFolder root;
  const fs::path folder = root.path() / "etc/mirvel/LaunchDaemons";
  fs::create_directories(folder);
  Connections connections(
      {.action = {}, .privileged = MIRVEL_PRIVILEGED, .privilegedArguments = {"--root", root.path()}});
  HelperConnections::Privileged privileged;
  connections.connect([&](auto result) { privileged = std::move(result); },
                      [&](const Error& error) { FAIL() << error.text(); });
  ASSERT_TRUE(connections.queue.runUntil([&] { return privileged.connection != nullptr; }));

  const auto ask = [&](Dictionary request, const std::string& authData) {
    request.set("authData", propertylist::Data{authData});
    std::optional<Dictionary> answer;
    privileged.connection->run(
        request, [&](const auto& reply) { answer = reply; },
        [&](const Error&) {
          answer = Dictionary{{"failed", true}};
        });
    EXPECT_TRUE(connections.queue.runUntil([&] { return answer.has_value(); }));
    return answer.value_or(Dictionary());
  };
  const auto write = [](const fs::path& path) {
    return Dictionary{{"kind", 0}, {"path", path.string()}, {"string", testdata::jobText("a")}};
  };
  const fs::path file = folder / "a.plist", outside = root.path() / "x.plist";
  const std::string& secret = privileged.authData;
  const struct {
    Dictionary request;
    std::string secret;
    const char* answer;  ///< a key of the answer; empty for an empty answer
    bool isFileThere;
  } rows[] = {
      {write(file), std::string(32, 'x'), "error", false},
      {write(outside), secret, "error", false},
      {write(file), secret, "", true},
      {{{"kind", 3}}, secret, "", true},
      {write(file), secret, "failed", true},  // it has ended
  };
  for (const auto& row : rows) {
    const Dictionary answer = ask(row.request, row.secret);
    EXPECT_EQ(answer.find(row.answer) != nullptr, *row.answer != '\0') << &row - rows;
    EXPECT_EQ(answer.size() == 0, *row.answer == '\0') << &row - rows;
    EXPECT_EQ(fs::exists(file), row.isFileThere) << &row - rows;
    EXPECT_FALSE(fs::exists(outside));
  }
  EXPECT_EQ(testdata::bytes(file), testdata::jobText("a"));
}

}  // namespace
}  // namespace mirvel
