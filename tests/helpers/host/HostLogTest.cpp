// The log as the real host keeps it: what jobs print and write to their files, and queries that wait for lines.

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <future>
#include <map>
#include <numeric>
#include <set>

#include "helpers/host/HostFixture.h"
#include "helpers/host/JobLog.h"
#include "helpers/wire/FrameSocket.h"

namespace mirvel::host {
namespace {

namespace fs = std::filesystem;
using messages::LogLine;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class HostLog : public HostFixture {
 protected:
  messages::LogLines ask(const std::string& label, std::optional<std::int64_t> after = {}) {
    auto lines = embedded.log({.period = seconds(3600), .searchString = label, .after = after}, none);
    EXPECT_TRUE(lines) << lines.error().text();
    return lines ? *std::move(lines) : messages::LogLines();
  }

  /// Follows the log, from where the last call has left off, until a line contains the text.
  std::string follow(const std::string& label, const std::string& text) {
    for (;;) {
      const auto found = ask(label, m_last[label]);
      if (found.lines.empty()) return "no line with " + text;
      for (const auto& line : found.lines) {
        m_last[label] = line.number;
        m_lines[label].push_back(line.message);
        if (line.message.find(text) != std::string::npos) return line.message;
      }
    }
  }
  const std::vector<std::string>& followed(const std::string& label) { return m_lines[label]; }

  /// A job whose script continues at each `next` when `go` is called.
  void loadStepwise(const std::string& label, const std::string& script, propertylist::Dictionary keys) {
    keys.set("RunAtLoad", true);
    keys.set("WorkingDirectory", folder.path().string());
    Signpost::makePipe(folder.path() / "go");
    load(job(label, "exec 8<> go; next() { read -r line <&8; }; " + script, std::move(keys)));
  }
  void go() { std::ofstream(folder.path() / "go") << "\n"; }

 private:
  std::map<std::string, std::int64_t> m_last;
  std::map<std::string, std::vector<std::string>> m_lines;
};

TEST_F(HostLog, HasThePipeAndTheFilesInOrderWhateverHappensToTheFile) {
  const fs::path out = folder.write("out", "before the start\n");
  loadStepwise(
      "mixed",
      "echo pipe 1; next; echo file 1 >&2; next; echo pipe 2; next; mv out moved; echo moved >&2; next; "
      "echo recreated > out; next; : > out; next; echo short >> out; next; "
      "echo replaced > new; mv new out; next; rm out; echo moved again >&2; next; echo late > out; next; printf end",
      {{"StandardErrorPath", out.string()}});
  for (const char* const line : {"pipe 1", "file 1", "pipe 2", "moved", "recreated"}) {
    EXPECT_EQ(follow("mixed", line), line);
    go();
  }
  go();
  for (const char* const line : {"short", "replaced", "moved again", "late"}) {
    EXPECT_EQ(follow("mixed", line), line);
    go();
  }
  EXPECT_EQ(follow("mixed", "exited"), "exited with 0");
  EXPECT_THAT(followed("mixed"), ElementsAre("started", "pipe 1", "file 1", "pipe 2", "moved", "recreated", "short",
                                             "replaced", "moved again", "late", "end", "exited with 0"));
}

TEST_F(HostLog, HasEachLineOfAFileOnceAlsoIfBothPathsLeadToIt) {
  const std::string out = (folder.path() / "out").string(), link = (folder.path() / "link").string();
  folder.write("there", "");
  fs::create_symlink(folder.path() / "there", link);
  fs::create_hard_link(folder.path() / "there", folder.path() / "hard");
  const struct {
    const char* label;
    std::string standardOut, standardError;
  } rows[] = {
      {"same", out, out},
      {"relative", out, "out"},
      {"linked", (folder.path() / "there").string(), link},
      {"hard", (folder.path() / "hard").string(), link},
  };
  for (const auto& row : rows) {
    load(job(row.label, "echo a; echo b >&2; echo c",
             {{"RunAtLoad", true},
              {"WorkingDirectory", folder.path().string()},
              {"StandardOutPath", row.standardOut},
              {"StandardErrorPath", row.standardError}}));
    EXPECT_TRUE(hasEnded(row.label));
    EXPECT_THAT(messagesOf(row.label), ElementsAre("started", "a", "b", "c", "exited with 0")) << row.label;
  }
}

TEST_F(HostLog, LeavesPipesAndDevicesAlone) {
  Signpost pipe(folder.path() / "pipe");
  load(job("writer", "echo to the pipe; echo nowhere >&2",
           {{"RunAtLoad", true},
            {"StandardOutPath", (folder.path() / "pipe").string()},
            {"StandardErrorPath", "/dev/null"}}));
  EXPECT_EQ(pipe.line(), "to the pipe");
  EXPECT_TRUE(hasEnded("writer"));
  EXPECT_THAT(messagesOf("writer"), ElementsAre("started", "exited with 0"));
}

TEST_F(HostLog, ReadsForAUserOnlyWhatThatUserCanRead) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can be another user";
  fs::permissions(folder.path(), fs::perms(0755));
  for (const char* const name : {"readable", "unreadable"}) {
    const auto file = folder.write(name, "");
    const bool isReadable = std::string(name) == "readable";
    fs::permissions(file, fs::perms(isReadable ? 0666 : 0222));
  }
  load(job("guest", "echo shown; echo hidden >&2",
           {{"RunAtLoad", true},
            {"UserName", "nobody"},
            {"StandardOutPath", (folder.path() / "readable").string()},
            {"StandardErrorPath", (folder.path() / "unreadable").string()}}));
  EXPECT_TRUE(hasEnded("guest"));
  EXPECT_EQ(testdata::bytes(folder.path() / "unreadable"), "hidden\n");
  EXPECT_THAT(messagesOf("guest"), ElementsAre("started", "shown", "exited with 0"));
}

TEST_F(HostLog, KeepsAHundredThousandShortLines) {
  load(job("counts", "seq 100000", {{"RunAtLoad", true}}));
  EXPECT_TRUE(hasEnded("counts"));
  const auto log = ask("counts");
  ASSERT_EQ(log.lines.size(), 100'002U);
  EXPECT_EQ(log.dropped, 0);
  std::set<double> times;
  for (std::size_t i = 1; i + 1 < log.lines.size(); ++i) {
    ASSERT_EQ(log.lines[i].message, std::to_string(i));
    ASSERT_EQ(log.lines[i].number, static_cast<std::int64_t>(i + 1));
    ASSERT_GE(log.lines[i].seconds, log.lines[i - 1].seconds);
    times.insert(log.lines[i].seconds);
  }
  EXPECT_GT(times.size(), 100U) << "they aren't printed in one moment";
}

TEST_F(HostLog, BoundsWhatAnEndlessOutputCosts) {
  for (const bool isFile : {false, true}) {
    const std::string label = isFile ? "file" : "pipe";
    Signpost signpost(folder.path() / (label + " post"));
    propertylist::Dictionary keys{{"RunAtLoad", true}};
    if (isFile) keys.set("StandardOutPath", (folder.path() / "out").string());
    load(job(label,
             "echo $PPID > " + signpost.quoted() + "; yes | head -c 30000000; echo > " + signpost.quoted() +
                 (isFile ? "; sleep 1000" : "; exec yes"),
             std::move(keys)));
    const std::string host = signpost.line();
    signpost.line();
    EXPECT_EQ(status().size(), 1U) << "other requests are served";
    unload(label);
    std::uintmax_t size = 0;
    for (const auto& file : fs::directory_iterator(places.log())) size += fs::file_size(file);
    EXPECT_LE(size, (isFile ? 2 : 1) * (JobLog::outputSize + JobLog::eventsSize));
    const auto log = ask(label);
    EXPECT_GT(log.dropped, 10'000'000);
    const auto isNote = [](const LogLine& line) { return line.message.ends_with("the job prints too much]"); };
    EXPECT_GT(std::count_if(log.lines.begin(), log.lines.end(), isNote), 0);
    std::ifstream memory("/proc/" + host + "/status");
    const std::string text{std::istreambuf_iterator<char>(memory), {}};
    const auto peak = text.find("VmHWM:");
    ASSERT_NE(peak, std::string::npos);
#ifndef MIRVEL_SANITIZED
    EXPECT_LT(std::stol(text.substr(peak + 6)), 60 * 1024) << "kilobytes";
#endif
  }
}

TEST_F(HostLog, APromptAppearsWhenSomebodyWaits) {
  loadStepwise("asks", "printf 'Name? '; next; printf 'Hello '; echo you", {});
  EXPECT_EQ(follow("asks", "Name"), "Name? ");
  go();
  EXPECT_TRUE(hasEnded("asks"));
  EXPECT_THAT(messagesOf("asks"), ElementsAre("started", "Name? ", "Hello you", "exited with 0"));
}

TEST_F(HostLog, LinesThatComeTogetherAreAnsweredTogether) {
  loadStepwise("many", "next; seq 1000; next; echo last", {});
  EXPECT_EQ(follow("many", "started"), "started");
  go();
  int answers = 0;
  for (std::int64_t last = 1; last < 1001; ++answers) last = ask("many", last).lines.back().number;
  EXPECT_LT(answers, 20);
  go();
  EXPECT_EQ(follow("many", "last"), "last");
}

TEST_F(HostLog, WaitingQueriesAreCancelledOneByOne) {
  loadStepwise("slow", "next; echo later", {});
  EXPECT_EQ(follow("slow", "started"), "started");
  const auto connection = connectToHost(places.socket);
  ASSERT_TRUE(connection);
  wire::FrameReader reader;
  const auto next = [&] {
    const auto frame = wire::receiveFrame(connection->number(), reader);
    return frame && *frame ? **frame : wire::Frame();
  };
  const auto query = hostdata::write(hostdata::Log{.label = "slow", .after = 1});
  for (const std::int64_t id : {1, 2}) ASSERT_TRUE(wire::sendFrame(connection->number(), {.id = id, .body = query}));
  ASSERT_TRUE(wire::sendFrame(connection->number(), {.id = 1, .kind = wire::Frame::Kind::Cancel}));
  const auto cancelled = next();
  EXPECT_EQ(cancelled.id, 1);
  EXPECT_EQ(hostdata::Refusal::read(cancelled.body)->error.code, Error::Code::Cancelled);

  Cancellation cancellation;
  auto waiting = std::async(std::launch::async, [&] {
    return embedded.log({.period = seconds(60), .searchString = "slow", .after = 1}, cancellation);
  });
  cancellation.cancel();
  const auto result = waiting.get();
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().code, Error::Code::Cancelled);
  go();
  const auto answer = next();
  EXPECT_EQ(answer.id, 2);
  const auto content = messages::FieldReader::read<hostdata::Log::Answer>(answer.body);
  ASSERT_TRUE(content);
  const auto lines = linesOfBlocks(content->blocks.bytes, {.after = content->after}).lines;
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.front().message, "later");
}

TEST_F(HostLog, TheNumbersContinueWithTheNextHost) {
  Signpost post(folder.path() / "post");
  load(lastingJob("stays", post));
  const auto first = post.words();
  restart();
  const auto second = post.words();
  ASSERT_EQ(::kill(std::stoi(second[1]), SIGKILL), 0);
  ASSERT_TRUE(ends(second[1]));
  startNext();
  post.line();
  unload("stays");
  const auto log = ask("stays");
  std::vector<std::int64_t> expected(log.lines.size());
  std::iota(expected.begin(), expected.end(), 1);
  std::vector<std::int64_t> numbers;
  for (const auto& line : log.lines) numbers.push_back(line.number);
  EXPECT_EQ(numbers, expected);
  const auto messages = messagesOf("stays");
  EXPECT_EQ(std::count(messages.begin(), messages.end(), "started"), 3);
}

TEST_F(HostLog, IsReadWithoutAHostAndFollowedUntilTheNext) {
  EXPECT_THAT(messagesOf("never loaded"), IsEmpty());
  load(job("quick", "echo done", {{"RunAtLoad", true}}));
  EXPECT_TRUE(hasEnded("quick"));
  load(job("quick.other", "true"));
  ASSERT_TRUE(embedded.quit());
  EXPECT_THAT(messagesOf("quick"), ElementsAre("started", "done", "exited with 0"));
  const auto after = ask("quick", 1);
  ASSERT_EQ(after.lines.size(), 2U);
  Cancellation cancellation;
  auto waiting = std::async(std::launch::async, [&] {
    return embedded.log({.period = seconds(60), .searchString = "quick", .after = 3}, cancellation);
  });
  EXPECT_FALSE(fs::exists(places.socket)) << "no query starts a host";
  startNext();
  const auto next = waiting.get();
  ASSERT_TRUE(next) << next.error().text();
  EXPECT_EQ(next->lines.front().number, 4);
  EXPECT_EQ(next->lines.front().message, "started");
  unload("quick");
  ASSERT_TRUE(embedded.quit());
  const auto last = ask("quick").lines.back().number;
  auto cancelled = std::async(std::launch::async, [&] {
    return embedded.log({.period = seconds(60), .searchString = "quick", .after = last}, cancellation);
  });
  cancellation.cancel();
  EXPECT_EQ(cancelled.get().error().code, Error::Code::Cancelled);
}

TEST_F(HostLog, BeginsAgainWhenTheFilesWereDeletedBetweenTwoHosts) {
  load(job("quick", "echo done", {{"RunAtLoad", true}}));
  EXPECT_TRUE(hasEnded("quick"));
  ASSERT_TRUE(embedded.quit());
  fs::remove_all(places.log());
  startNext();
  EXPECT_TRUE(hasEnded("quick"));
  const auto lines = ask("quick", 1000).lines;
  ASSERT_FALSE(lines.empty()) << "the numbers that the client knows are of no log any more";
  EXPECT_EQ(lines.front().number, 1);
}

TEST_F(HostLog, NothingIsLeftOfATemporaryJob) {
  const auto file = job("trial", "echo hello", {{"RunAtLoad", true}});
  ASSERT_TRUE(embedded.loadTemporarily(file));
  EXPECT_TRUE(hasEnded("trial"));
  EXPECT_THAT(messagesOf("trial"), Contains("hello"));
  unload("trial");
  EXPECT_THAT(messagesOf("trial"), IsEmpty());
  load(file);
  EXPECT_TRUE(hasEnded("trial"));
  unload("trial");
  ASSERT_TRUE(embedded.loadTemporarily(file));
  EXPECT_TRUE(hasEnded("trial"));
  unload("trial");
  const auto messages = messagesOf("trial");
  EXPECT_EQ(std::count(messages.begin(), messages.end(), "hello"), 2) << "the log of a job that was loaded stays";
}

}  // namespace
}  // namespace mirvel::host
