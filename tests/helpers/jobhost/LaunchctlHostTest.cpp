#include "helpers/jobhost/LaunchctlHost.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <deque>
#include <fstream>
#include <functional>

#include "helpers/FakeJobHost.h"
#include "helpers/action/RequestHandler.h"
#include "helpers/hostdata/HostMessages.h"
#include "helpers/jobfiles/UserJobFiles.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

using testing::ElementsAre;

/// Returns the prepared results one after the other, and records each call as a line. A call that hangs takes as long
/// as its limit permits, in virtual time.
class FakeTool final : public ProcessRunner {
 public:
  std::vector<std::string> calls;
  std::deque<ProcessResult> answers;
  ProcessResult usual = {};            ///< when there are no more answers
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
    if (answers.empty()) return usual;
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

/// How a run ended, in a line; empty if it hasn't.
std::string described(const std::optional<RunEnd>& end) {
  if (!end) return {};
  switch (end->how) {
    case RunEnd::How::Exited:
      return "exit " + std::to_string(end->code);
    case RunEnd::How::Signalled:
      return "signal " + std::to_string(end->code);
    case RunEnd::How::CouldNotStart:
      return "no start " + std::to_string(end->code) + ' ' + end->subject;
    case RunEnd::How::Lost:
      break;
  }
  return "lost";
}

TEST_F(LaunchctlHostTest, AJobHasEndedOnceLaunchdReportsHow) {
  const struct {
    const char* output;
    const char* end;
  } rows[] = {
      {"\tstate = running\n\tlast exit code = (never exited)\n", ""},
      {"gui/501/a = {\n\tstate = not running\n\tlast exit code = 1\n}\n", "exit 1"},
      {"\tstate = not running\n\tlast exit code = 78: EX_CONFIG\n", "exit 78"},
      {"\tstate = not running\n\tprogram = /x y\n\tjob state = spawn failed\n\tlast exit code = 78: EX_CONFIG\n",
       "no start 0 /x y"},
      {"\tjob state = spawn failed\n\tprogram = /x\n\tlast spawn error = 2: No such file or directory\n",
       "no start 2 /x"},
      {"\tstate = not running\n\tlast terminating signal = Killed: 9\n", "signal 9"},
      {"\tlast exit code = 0\n\tlast terminating signal = Segmentation fault: 11\n", "signal 11"},
      {"\tstate = spawn scheduled\n", ""},
      {"\tendpoints = {\n\t\tlast exit code = 3\n\t}\n", ""},
      {"\tlast exit code = x\n\tlast exit code\n", ""},
      {"", ""},
  };
  for (const auto& row : rows) {
    tool.answers = {{.output = row.output}};
    const auto ended = host.waitForEnd("a", std::chrono::seconds(0));
    ASSERT_TRUE(ended);
    EXPECT_EQ(described(ended->run ? ended->run->end : std::nullopt), row.end) << row.output;
    EXPECT_EQ(ended->hasEnded, ended->run.has_value());
  }
  tool.answers = {notLoaded};
  const auto unloaded = host.waitForEnd("a", std::chrono::seconds(60));
  EXPECT_TRUE(unloaded && unloaded->hasEnded && !unloaded->run);
  waited = {};
  const auto ended = host.waitForEnd("a", std::chrono::seconds(60));
  EXPECT_TRUE(ended && !ended->hasEnded);
  EXPECT_EQ(waited, std::chrono::seconds(60));
}

TEST_F(LaunchctlHostTest, JobsAreStartedAndStopped) {
  using Order = messages::Control::Order;
  const ProcessResult idle{.output = "\tpath = /a.plist\n\tstate = not running\n"};
  const ProcessResult running{.output = "\tpath = /a.plist\n\tpid = 12\n\texit timeout = 5\n"};
  const ProcessResult other{.output = "\tpath = /b.plist\n\tpid = 12\n"};
  const ProcessResult again{.output = "\tpath = /a.plist\n\tpid = 13\n"};
  const ProcessResult refused{.exitStatus = 5, .complaints = "no"};
  const struct {
    Order order;
    std::deque<ProcessResult> answers;
    std::vector<std::string> calls;  ///< without those of print
    std::optional<Error::Code> failure;
  } rows[] = {
      {Order::Start, {idle}, {"kickstart gui/501/a"}, {}},
      {Order::Start, {idle, refused}, {"kickstart gui/501/a"}, Error::Code::Io},
      {Order::Start, {running}, {}, {}},
      {Order::Start, {other}, {}, Error::Code::NotFound},
      {Order::Start, {notLoaded}, {}, Error::Code::NotFound},
      {Order::Start, {{.output = "\tpath = (submitted by x)\n"}}, {}, Error::Code::NotFound},
      {Order::Restart, {running}, {"kickstart -k gui/501/a"}, {}},
      {Order::Restart, {other}, {}, Error::Code::NotFound},
      {Order::Stop, {idle}, {}, {}},
      {Order::Stop, {running, {}, running, idle}, {"kill SIGTERM gui/501/a"}, {}},
      {Order::Stop, {running, {}, again}, {"kill SIGTERM gui/501/a"}, {}},
      {Order::Stop, {running, refused, notLoaded}, {"kill SIGTERM gui/501/a"}, {}},
  };
  for (const auto& row : rows) {
    tool.calls.clear();
    tool.answers = row.answers;
    const auto done = host.control("/a.plist", "a", row.order);
    std::vector<std::string> calls;
    for (std::string call : tool.calls) {
      std::replace(call.begin(), call.end(), '|', ' ');
      call.erase(0, std::string_view("/bin/launchctl ").size());
      if (!call.starts_with("print")) calls.push_back(call);
    }
    EXPECT_EQ(calls, row.calls) << &row - rows;
    EXPECT_EQ(done ? std::nullopt : std::optional(done.error().code), row.failure) << &row - rows;
  }
  EXPECT_FALSE(host.control("/a.plist", "", Order::Stop));
}

TEST_F(LaunchctlHostTest, AJobThatIgnoresSigtermIsKilledAfterItsTimeOut) {
  tool.usual = {.output = "\tpath = /a.plist\n\tpid = 12\n\texit timeout = 5\n"};
  const auto stopped = host.control("/a.plist", "a", messages::Control::Order::Stop);
  ASSERT_FALSE(stopped);
  EXPECT_EQ(stopped.error().code, Error::Code::StillRunning);
  EXPECT_EQ(waited, longestStop);
  EXPECT_EQ(std::count(tool.calls.begin(), tool.calls.end(), "/bin/launchctl|kill|SIGKILL|gui/501/a"), 1);
}

TEST(LaunchctlLogTest, ALabelIsAWholeWord) {
  const struct {
    const char* text;
    bool contains;
  } rows[] = {{"[gui/501/org.a [12]:] started", true},
              {"[org.a:category] text", true},
              {"org.a", true},
              {"ended org.a.", true},
              {"org.a. Then", true},
              {"org.a.b", false},
              {"org.ab", false},
              {"org.a-b org.a_b", false},
              {"x.org.a", false},
              {"xorg.a", false},
              {"org.a.b, then org.a", true},
              {"ORG.A", false},
              {"", false}};
  for (const auto& row : rows) EXPECT_EQ(containsLabel(row.text, "org.a"), row.contains) << row.text;
}

constexpr const char* shownLog =
    "Timestamp                       (process)[PID]    \n"
    "2023-11-14 23:13:20.500000+0100  mac launchd[1]: [gui/501/org.a [7]:] started\n"
    "\tmore of it\n"
    "2023-11-14 17:13:20.500000-0500  mac tool[7]: (lib) [org.a:main] done\n"
    "2023-11-14 17:13:21.000000-0500  mac launchd[1]: [gui/501/org.a.b [8]:] another job\n"
    "2023-13-45 17:13:21.000000-0500  no date, so a part of the other job's\n"
    "2023-11-14 17:13:22.000001-0500  mac tool[7]: [org.a:main] \xff\xfe";

TEST(LaunchctlLogTest, EntriesAreReadInPiecesOfAnySize) {
  const std::string text = shownLog;
  for (std::size_t size = 1; size <= text.size(); size += size < 90 ? 1 : 90) {
    LogShowReader reader("org.a", 0);
    for (std::size_t at = 0; at < text.size(); at += size) reader.read(std::string_view(text).substr(at, size));
    const auto log = std::move(reader).finish();
    ASSERT_EQ(log.lines.size(), 3U) << size;
    EXPECT_EQ(log.lines[0].message, "mac launchd[1]: [gui/501/org.a [7]:] started\n\tmore of it");
    EXPECT_EQ(log.lines[0].kind, messages::LogLine::Kind::Event);
    EXPECT_EQ(log.lines[0].seconds, 1700000000.5);
    EXPECT_EQ(log.lines[0].number, 1'700'000'000'500'000'000);
    EXPECT_EQ(log.lines[1].kind, messages::LogLine::Kind::Output);
    EXPECT_EQ(log.lines[1].number, 1'700'000'000'500'000'001) << "the same moment";
    EXPECT_EQ(log.lines[2].number, 1'700'000'002'000'001'000);
    EXPECT_EQ(log.dropped, 0);
  }
}

TEST(LaunchctlLogTest, TheNewestLinesAreKeptAndOthersCounted) {
  LogShowReader reader("a", 0);
  const std::string endless(LogShowReader::longestMessage, 'x');
  constexpr int count = 1000;
  for (int i = 0; i < count; ++i) {
    reader.read("2023-11-14 23:13:20.500000+0100 a ");
    reader.read(endless);
    reader.read(endless + '\n');
  }
  const auto log = std::move(reader).finish();
  EXPECT_EQ(static_cast<std::int64_t>(log.lines.size()) + log.dropped, count);
  EXPECT_GT(log.dropped, 0);
  std::size_t bytes = 0;
  for (const auto& line : log.lines) bytes += line.message.size();
  EXPECT_LE(bytes, LogShowReader::mostBytes);
  EXPECT_EQ(log.lines.back().number, 1'700'000'000'500'000'000 + count - 1);
}

TEST_F(LaunchctlHostTest, TheLogIsQueriedForTheLabel) {
  tool.answers = {notLoaded, {.output = shownLog}};
  const auto lines = host.log({.period = std::chrono::hours(4), .searchString = "odd\"la\\bel"}, none);
  EXPECT_THAT(tool.calls, ElementsAre("/bin/launchctl|print|gui/501/odd\"la\\bel",
                                      "/usr/bin/log|show|--style|syslog|--info|--last|14400|--predicate|"
                                      "subsystem == \"odd\\\"la\\\\bel\" OR "
                                      "(process == \"launchd\" AND eventMessage CONTAINS \"odd\\\"la\\\\bel\")"));
  EXPECT_TRUE(lines && lines->lines.empty());
  tool.answers = {notLoaded, {.exitStatus = 64, .complaints = "log: bad predicate"}};
  EXPECT_FALSE(host.log({.period = std::chrono::hours(1), .searchString = "a"}, none));
}

TEST_F(LaunchctlHostTest, AWaitingQueryIsRepeatedUntilThereIsALine) {
  const messages::LogQuery query{
      .period = std::chrono::hours(4), .searchString = "org.a", .after = 1'700'000'000'500'000'001};
  tool.answers = {notLoaded, {}, notLoaded, {}, notLoaded, {.output = shownLog}};
  const auto lines = host.log(query, none);
  ASSERT_TRUE(lines);
  ASSERT_EQ(lines->lines.size(), 1U);
  EXPECT_EQ(lines->lines[0].number, 1'700'000'002'000'001'000);
  EXPECT_GE(waited, 2 * LaunchctlHost::logInterval);
  EXPECT_THAT(tool.calls.at(1), testing::HasSubstr("|--start|@1700000000|"));
  waited = {};
  const auto nothing = host.log(query, none);
  EXPECT_TRUE(nothing && nothing->lines.empty());
  EXPECT_GE(waited, messages::longestLogWait);
  EXPECT_LE(waited, messages::longestLogWait + LaunchctlHost::logInterval);

  Cancellation cancelled;
  cancelled.cancel();
  const auto stopped = host.log(query, cancelled);
  ASSERT_FALSE(stopped);
  EXPECT_EQ(stopped.error().code, Error::Code::Cancelled);
}

class LaunchctlOutputTest : public LaunchctlHostTest {
 protected:
  /// Appends to the file as if at a time, in seconds since 1970.
  void print(const char* name, const std::string& text, std::int64_t time) const {
    const std::filesystem::path path = folder.path() / name;
    std::ofstream(path, std::ios::app) << text;
    const timespec times[2] = {{.tv_sec = time, .tv_nsec = 0}, {.tv_sec = time, .tv_nsec = 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  }
  /// The lines of an answer, with the seconds of the minute in which they were written. `last` becomes its number.
  std::vector<std::string> query(std::optional<std::int64_t> after, const std::string& shown = {}) {
    tool.answers = {{.output = "\tstdout path = " + (folder.path() / "out").string() +
                               "\n\tstderr path = " + (folder.path() / "err").string() + '\n'},
                    {.output = shown}};
    tool.usual = tool.answers[0];
    const auto log =
        host.log({.period = std::chrono::hours(24 * 36500), .searchString = "org.a", .after = after}, none);
    last = after.value_or(0);
    std::vector<std::string> lines;
    for (const auto& line : log ? log->lines : std::vector<messages::LogLine>()) {
      EXPECT_GT(line.number, last);
      last = line.number;
      lines.push_back(std::to_string(static_cast<int>(line.seconds) % 60) + ' ' + line.message);
    }
    return lines;
  }
  static auto isUnclear() { return testing::HasSubstr("isn't known"); }

  testdata::TemporaryFolder folder;
  std::int64_t last = 0;
};

TEST_F(LaunchctlOutputTest, TheLogHasWhatTheJobWritesToItsFiles) {
  print("out", "one\ntwo\nprompt> ", 1'700'000'000);
  print("err", "bad\n", 1'700'000'001);
  EXPECT_THAT(query({}, shownLog), ElementsAre(isUnclear(), "20 one", "20 two", "20 prompt> ",
                                               "20 mac launchd[1]: [gui/501/org.a [7]:] started\n\tmore of it",
                                               "20 mac tool[7]: (lib) [org.a:main] done", isUnclear(), "21 bad",
                                               "22 mac tool[7]: [org.a:main] \xff\xfe"));
  print("out", "yes\nthree\n", 1'700'000'001);
  print("err", "\xff\n", 1'700'000'030);
  EXPECT_THAT(query(last), ElementsAre("21 yes", "21 three", "50 \xff")) << "older than the last line, but new";
  EXPECT_THAT(query(last, "2023-11-14 17:13:25.000000-0500  mac launchd[1]: [gui/501/org.a [7]:] exited\n"),
              ElementsAre("25 mac launchd[1]: [gui/501/org.a [7]:] exited"))
      << "stored later than the file was read, but older";
  std::filesystem::remove(folder.path() / "out");
  print("out", "again\n", 1'700'000'040);
  EXPECT_THAT(query(last), ElementsAre("0 again")) << "replaced";
  print("out", "of the future\n", 9'000'000'000);
  (void)query(last);
  EXPECT_LT(last, 8'000'000'000'000'000'000);
}

TEST_F(LaunchctlOutputTest, EachOfTwoReadersGetsEachLineOnce) {
  print("out", "one\n", 1'600'000'000);
  (void)query({}, shownLog);
  const std::int64_t first = last;
  print("out", "two\n", 1'600'000'000);
  EXPECT_THAT(query({}, shownLog), testing::Contains("40 two"));
  const std::int64_t second = last;
  print("out", "three\n", 1'600'000'000);
  EXPECT_THAT(query(first), ElementsAre("40 two", "40 three"));
  EXPECT_THAT(query(second), ElementsAre("40 three"));
  print("out", "four\n", 1'600'000'000);
  EXPECT_THAT(query(second + 1000), ElementsAre(testing::HasSubstr("may be missing here")))
      << "an answer of another helper";
  print("out", "five\n", 1'600'000'000);
  EXPECT_THAT(query(last), ElementsAre("40 five"));
}

TEST(OutputTailsTest, WhatIsReadAtOnceIsBounded) {
  const testdata::TemporaryFolder folder;
  const std::string line(99, 'x');
  std::string text = std::string(OutputTails::longestLine + 10, 'y') + '\n';
  while (text.size() < OutputTails::mostBytes + 1000) text += line + '\n';
  const auto file = folder.write("out", text + "incomplete");
  OutputTails::Positions positions;
  const auto now = std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
  const auto read = [&] { return OutputTails::read({file, folder.path(), "/dev/zero"}, positions, now); };
  auto lines = read();
  ASSERT_GT(lines.size(), 40'000U);
  EXPECT_EQ(lines[1].kind, messages::LogLine::Kind::Event);
  EXPECT_THAT(lines[1].message, testing::HasSubstr(" bytes of "));
  EXPECT_EQ(lines[2].message, line) << "not a part of a line";
  EXPECT_EQ(lines.back().message, line) << "the last line may go on";
  EXPECT_TRUE(read().empty());
  std::ofstream(file, std::ios::app) << " no more\n" << std::string(OutputTails::longestLine + 10, 'y') << '\n';
  lines = read();
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0].message, "incomplete no more");
  EXPECT_EQ(lines[1].message.size(), OutputTails::longestLine);
  EXPECT_EQ(lines[2].message, "yyyyyyyyyy");
}

}  // namespace
}  // namespace mirvel
