#include "helpers/action/TestRuns.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/propertylist/Reader.h"
#include "helpers/FakeJobHost.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using propertylist::Dictionary;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class TestRunsTest : public testing::Test {
 protected:
  const testdata::TemporaryFolder root;
  const fs::path folder = root.path() / "support" / "tests";
  testdata::FakeJobHost host;
  std::optional<TestRuns> tests{std::in_place, host, folder};
  Cancellation cancellation;
  const messages::Test request{
      .testPath = root.path() / "asked.plist",
      .testOutputPath = root.path() / "asked.out",
      .string = testdata::jobText("uuid", {{"StandardErrorPath", "/err"}, {"Odd", 1}, {"UserName", "no such user"}})};

  /// The calls of the host, without the names of files.
  std::vector<std::string> calls() const {
    std::vector<std::string> result;
    for (const std::string& call : host.calls) result.push_back(call.substr(0, call.find(' ')));
    return result;
  }
  std::vector<fs::path> folders() const {
    std::vector<fs::path> result;
    if (!fs::exists(folder)) return result;
    for (const auto& entry : fs::directory_iterator(folder)) result.push_back(entry.path());
    return result;
  }
};

TEST_F(TestRunsTest, TheOutcomeIsWhatTheHostSays) {
  const RunReport run{.number = 1, .start = 100, .endTime = 101.5, .end = RunEnd{.code = 3}};
  const RunEnd lost{.how = RunEnd::How::Lost};
  const struct {
    JobHost::Ended ended;
    std::optional<RunEnd> outcome;
    std::optional<double> seconds;
  } rows[] = {{{.hasEnded = true, .run = run}, run.end, 1.5},
              {{.hasEnded = true}, lost, {}},
              {{.hasEnded = true, .run = RunReport{.number = 1}}, lost, {}},
              {{.hasEnded = false}, {}, 60.0}};
  host.output = "caf\xC3\xA9 \xFF\n";
  for (const auto& row : rows) {
    host.ended = row.ended;
    const auto result = tests->run(request, cancellation);
    ASSERT_TRUE(result) << result.error().text();
    EXPECT_EQ(result->text, "caf\xC3\xA9 \xEF\xBF\xBD\n");
    EXPECT_EQ(result->outcome, row.outcome);
    if (row.seconds) {
      EXPECT_EQ(result->seconds, *row.seconds);
    }
    EXPECT_THAT(folders(), testing::SizeIs(1)) << "it stays loaded until it is removed";
    EXPECT_TRUE(*tests->remove(request.testPath));
    EXPECT_THAT(folders(), IsEmpty());
  }
  EXPECT_EQ(tests->remove(request.testPath), std::nullopt);
}

TEST_F(TestRunsTest, OnlyThePathsOfTheOutputAreReplacedInAPrivateFolder) {
  ASSERT_TRUE(tests->run(request, cancellation));
  const fs::path own = folders().at(0);
  auto job = *propertylist::readDictionary(testdata::bytes(own / "job.plist"));
  const std::string pipe = *job.get<std::string>("StandardOutPath");
  EXPECT_EQ(job, (Dictionary{{"Label", "uuid"},
                             {"Odd", 1},
                             {"StandardErrorPath", pipe},
                             {"StandardOutPath", pipe},
                             {"UserName", "no such user"}}));
  EXPECT_TRUE(fs::is_fifo(pipe));
  EXPECT_EQ(fs::status(own).permissions(), fs::perms::owner_all);
  for (const fs::path& file : {own / "job.plist", fs::path(pipe)}) {
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write) << file;
  }
  EXPECT_FALSE(fs::exists(request.testPath));
  EXPECT_FALSE(fs::exists(request.testOutputPath));
  tests.reset();
  EXPECT_EQ(host.calls.back(), "unload uuid") << "it ends with the helper";
  EXPECT_THAT(folders(), IsEmpty());
}

TEST_F(TestRunsTest, ALongOutputKeepsItsBeginningAndEnd) {
  for (int line = 0; line < 400'000; ++line) host.output += std::to_string(line) + '\n';
  std::int64_t lines = 0;
  const auto result = tests->run(request, cancellation, [&](const messages::TestProgress& progress) {
    lines += std::count(progress.beginning.begin(), progress.beginning.end(), '\n');
    return lines % 2 == 0;  // the reader is slow
  });
  ASSERT_TRUE(result && result->end);
  EXPECT_EQ(result->text, host.output.substr(0, result->text.size()));
  EXPECT_EQ(*result->end, host.output.substr(host.output.size() - result->end->size()));
  const std::string dropped =
      host.output.substr(result->text.size(), host.output.size() - result->text.size() - result->end->size());
  EXPECT_EQ(result->droppedBytes, static_cast<std::int64_t>(dropped.size()));
  EXPECT_EQ(result->droppedLines, std::count(dropped.begin(), dropped.end(), '\n'));
}

TEST_F(TestRunsTest, AJobThatOutlivesTheLimitIsntBlockedByItsOutput) {
  host.ended = {.hasEnded = false};
  ASSERT_TRUE(tests->run(request, cancellation));
  const FileDescriptor job(::open((folders().at(0) / "output").c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
  const std::string piece(4096, 'y');
  for (std::size_t written = 0; written < std::size_t{1} << 20U;) {
    pollfd waiting{.fd = job.number(), .events = POLLOUT, .revents = 0};
    ASSERT_EQ(::poll(&waiting, 1, 20'000), 1) << "nobody reads after " << written << " bytes";
    const ssize_t count = ::write(job.number(), piece.data(), piece.size());
    ASSERT_GT(count, 0);
    written += static_cast<std::size_t>(count);
  }
  EXPECT_TRUE(*tests->remove(request.testPath));
  EXPECT_THAT(folders(), IsEmpty());
}

TEST_F(TestRunsTest, ATestThatIsRemovedMeanwhileWasStoppedWhateverTheHostSays) {
  const struct {
    std::string call;
    bool fails;  ///< as there is no such file or job any more
    int unloads;
  } rows[] = {{"load", true, 1}, {"load", false, 2}, {"wait", true, 1}, {"wait", false, 1}};
  for (const auto& row : rows) {
    host.failing = row.fails ? std::set<std::string>{"load job.plist", "wait 60 s for uuid"} : std::set<std::string>();
    if (row.call == "wait") host.failing.erase("load job.plist");
    host.calls.clear();
    host.onCall = [&](const std::string& now) {
      if (now.starts_with(row.call)) {
        EXPECT_TRUE(*tests->remove(request.testPath));
      }
    };
    const auto result = tests->run(request, cancellation);
    ASSERT_TRUE(result) << row.call;
    EXPECT_EQ(result->outcome, (RunEnd{.how = RunEnd::How::Lost, .isStopped = true})) << row.call;
    EXPECT_EQ(std::count(host.calls.begin(), host.calls.end(), "unload uuid"), row.unloads) << row.call;
    EXPECT_THAT(folders(), IsEmpty());
  }
}

TEST_F(TestRunsTest, AFailureOrACancellationLeavesNothingBehind) {
  using Code = Error::Code;
  const struct {
    std::string failing;
    std::string cancelledAt;
    Code code;
    std::vector<std::string> calls;
  } rows[] = {{"load job.plist", "", Code::Io, {"load", "unload"}},
              {"wait 60 s for uuid", "", Code::Io, {"load", "wait", "unload"}},
              {"load job.plist", "load", Code::Cancelled, {"load", "unload"}},
              {"", "load", Code::Cancelled, {"load", "unload", "wait"}},
              {"", "wait", Code::Cancelled, {"load", "wait", "unload"}}};
  for (const auto& row : rows) {
    Cancellation mine;
    host.calls.clear();
    host.failing = {row.failing};
    host.onCall = [&](const std::string& now) {
      if (!row.cancelledAt.empty() && now.starts_with(row.cancelledAt)) mine.cancel();
    };
    const auto result = tests->run(request, mine);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().code, row.code) << row.failing;
    EXPECT_EQ(calls(), row.calls);
    EXPECT_THAT(folders(), IsEmpty());
  }
  host.calls.clear();
  cancellation.cancel();
  EXPECT_FALSE(tests->run(request, cancellation));
  EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(TestRunsTest, WhatAKilledHelperHasLeftIsStoppedAndRemoved) {
  ASSERT_TRUE(tests->run(request, cancellation));
  const fs::path running = folders().at(0);
  const auto leave = [&](const std::string& name, const std::string& content) {
    (void)root.write("support/tests/test-" + name + "/job.plist", content);
    (void)root.write("support/tests/test-" + name + "/output", "");
  };
  leave("loaded", testdata::jobText("left"));
  leave("stubborn", testdata::jobText("stubborn"));
  leave("unfinished", "<");
  (void)root.write("support/tests/mine/job.plist", testdata::jobText("mine"));
  host.calls.clear();
  host.failing = {"unload stubborn"};
  { const TestRuns next(host, folder); }
  EXPECT_THAT(host.calls, testing::UnorderedElementsAre("unload left", "unload stubborn"));
  EXPECT_THAT(folders(), testing::UnorderedElementsAre(running, folder / "mine", folder / "test-stubborn"))
      << "one is running, one isn't ours, and one is tried again";
  host.failing.clear();
  { const TestRuns next(host, folder); }
  EXPECT_THAT(folders(), testing::UnorderedElementsAre(running, folder / "mine"));
}

TEST_F(TestRunsTest, AFolderThatOthersCanChangeIsRefused) {
  fs::create_directories(folder);
  fs::permissions(folder, fs::perms::all);
  const auto result = tests->run(request, cancellation);
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().code, Error::Code::NotPermitted);
  EXPECT_THAT(host.calls, IsEmpty());
}

}  // namespace
}  // namespace mirvel
