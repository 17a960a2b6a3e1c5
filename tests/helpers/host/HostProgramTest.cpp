#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <sstream>

#include "core/catalogue/JobFolder.h"
#include "core/propertylist/Writer.h"
#include "helpers/host/HostFixture.h"
#include "helpers/hostdata/HostPlaces.h"
#include "helpers/wire/FrameSocket.h"

namespace mirvel::host {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

using HostProgram = HostFixture;

TEST_F(HostProgram, RunsAJobAtLoadAndLogsItsOutput) {
  load(job("talker", "echo first; echo second >&2; printf third; exit 3", {{"RunAtLoad", true}}));
  EXPECT_TRUE(hasEnded("talker"));
  EXPECT_THAT(messagesOf("talker"), ElementsAre("started", "first", "second", "third", "exited with 3"));
  ASSERT_EQ(status().size(), 1U);
  EXPECT_EQ(status()[0].lastCode, 3);
  EXPECT_EQ(status()[0].process, std::nullopt);
}

TEST_F(HostProgram, StartsTheProcessAsTheFileSays) {
  const auto& root = folder.path();
  fs::create_directories(root / "work");
  folder.write("input", "from the input\n");
  load(job("made", "pwd; cat; echo $FRUIT $HOME; umask; ulimit -n; nice; echo wrong >&2; echo $PATH",
           {{"RunAtLoad", true},
            {"WorkingDirectory", (root / "work").string()},
            {"StandardInPath", (root / "input").string()},
            {"StandardOutPath", (root / "out").string()},
            {"StandardErrorPath", (root / "err").string()},
            {"EnvironmentVariables", propertylist::Dictionary{{"FRUIT", "pear"}}},
            {"Umask", 27},
            {"Nice", 19},
            {"SoftResourceLimits", propertylist::Dictionary{{"NumberOfFiles", 77}}}}));
  EXPECT_TRUE(hasEnded("made"));
  EXPECT_EQ(testdata::bytes(root / "out"), (root / "work").string() + "\nfrom the input\npear " + root.string() +
                                               "\n0033\n77\n19\n/usr/bin:/bin:/usr/sbin:/sbin\n");
  EXPECT_EQ(testdata::bytes(root / "err"), "wrong\n");
  EXPECT_THAT(messagesOf("made"), testing::IsSupersetOf({"started", "from the input", "wrong", "exited with 0"}));
}

TEST_F(HostProgram, LogsWhyAJobCannotBeStarted) {
  struct {
    const char* label;
    propertylist::Dictionary keys;
    const char* message;
  } rows[] = {
      {"no-program", {{"Program", "/no/such"}}, "can't run the program: No such file or directory"},
      {"no-folder",
       {{"WorkingDirectory", "/no/such"}},
       "can't change to the working directory: No such file or directory"},
      {"no-input", {{"StandardInPath", "/no/such"}}, "can't open the standard input: No such file or directory"},
      {"no-output", {{"StandardOutPath", "/"}}, "can't open the standard output: Is a directory"},
  };
  for (auto& row : rows) {
    row.keys.set("RunAtLoad", true);
    load(job(row.label, "true", row.keys));
    EXPECT_TRUE(hasEnded(row.label));
    EXPECT_THAT(messagesOf(row.label), ElementsAre("started", row.message));
  }
}

TEST_F(HostProgram, BecomesTheUserOfARootJob) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can be another user";
  load(job("nobody", "id -un; echo $USER", {{"RunAtLoad", true}, {"UserName", "nobody"}}));
  EXPECT_TRUE(hasEnded("nobody"));
  EXPECT_THAT(messagesOf("nobody"), ElementsAre("started", "nobody", "nobody", "exited with 0"));
  load(job("stranger", "true", {{"RunAtLoad", true}, {"UserName", "no such user"}}));
  EXPECT_TRUE(hasEnded("stranger"));
  EXPECT_THAT(messagesOf("stranger"), Contains(HasSubstr("there is no user no such user")));
}

TEST_F(HostProgram, StopsTheRemainingProcessesUnlessTheyAreAbandoned) {
  for (const bool isAbandoned : {false, true}) {
    const std::string label = isAbandoned ? "abandons" : "leaves";
    Signpost pipe(folder.path() / label);
    load(job(label, "exec 9> " + pipe.quoted() + "; sleep 1000 & echo $! >&9",
             {{"RunAtLoad", true}, {"AbandonProcessGroup", isAbandoned}}));
    const std::string process = pipe.line();
    EXPECT_TRUE(hasEnded(label));
    if (isAbandoned) {
      EXPECT_TRUE(isAlive(process));
      ::kill(std::stoi(process), SIGKILL);
    }
    EXPECT_TRUE(pipe.isDeserted());
  }
}

TEST_F(HostProgram, NoticesPathsAndQueues) {
  const auto& root = folder.path();
  Signpost watched(root / "watched"), queued(root / "queued"), there(root / "there");
  fs::create_directories(root / "queue");
  load(job("watcher", "echo watched > " + watched.quoted(),
           {{"WatchPaths", propertylist::Array{(root / "later" / "file").string()}}}));
  load(job("queue", "rm '" + (root / "queue" / "item").string() + "'; " + "echo queued > " + queued.quoted(),
           {{"QueueDirectories", propertylist::Array{(root / "queue").string()}}}));
  const propertylist::Dictionary flag{{(root / "flag").string(), true}};
  load(job("state", "echo there > " + there.quoted(),
           {{"KeepAlive", propertylist::Dictionary{{"PathState", flag}}}, {"ThrottleInterval", 0}}));
  folder.write("later/file", "1");
  EXPECT_EQ(watched.line(), "watched");
  folder.write("queue/item", "1");
  EXPECT_EQ(queued.line(), "queued");
  folder.write("flag", "1");
  for (int run = 0; run < 2; ++run) EXPECT_EQ(there.line(), "there");
}

TEST_F(HostProgram, RejectsFilesThatAreNoJobsOrThatOthersCouldHaveWritten) {
  ASSERT_EQ(::mkfifo((folder.path() / "fifo").c_str(), 0600), 0);
  const auto writable = job("writable", "true");
  ASSERT_EQ(::chmod(writable.c_str(), 0666), 0);
  const struct {
    fs::path file;
    Error::Code code;
  } rows[] = {
      {folder.path() / "missing.plist", Error::Code::NotFound},
      {"relative.plist", Error::Code::BadArgument},
      {folder.path() / "fifo", Error::Code::Malformed},
      {folder.path(), Error::Code::Malformed},
      {folder.write("garbage.plist", "garbage <"), Error::Code::Malformed},
      {folder.write("empty.plist", testdata::jobText("")), Error::Code::MissingKey},
      {folder.write("idle.plist", testdata::jobText("idle", {{"KeepAlive", true}})), Error::Code::MissingKey},
      {folder.write("big.plist", std::string(JobFolder::largestFile + 1, ' ')), Error::Code::LimitExceeded},
      {writable, Error::Code::NotTrusted},
  };
  for (const auto& row : rows) {
    const auto loaded = embedded.load(row.file);
    ASSERT_FALSE(loaded) << row.file;
    EXPECT_EQ(loaded.error().code, row.code) << row.file << ": " << loaded.error().text();
  }
  EXPECT_THAT(status(), testing::IsEmpty());
}

TEST_F(HostProgram, RunsAJobWithoutWhatItCannotUseAndSaysSo) {
  // Only root's host can lower the nice value that it inherits.
  const std::string nice = ::geteuid() == 0 ? "0" : std::to_string(::getpriority(PRIO_PROCESS, 0));
  load(job("odd", "echo here; nice",
           {{"RunAtLoad", true},
            {"Nice", "much"},
            {"Disabled", "no"},
            {"MachServices", propertylist::Dictionary{{"a.b", true}}},
            {"EnvironmentVariables", propertylist::Dictionary{{"GOOD", "1"}, {"BAD", 1}}},
            {"Comment", "an unknown key isn't reported"}}));
  EXPECT_TRUE(hasEnded("odd"));
  EXPECT_THAT(messagesOf("odd"),
              ElementsAre(HasSubstr("MachServices isn't supported"), HasSubstr("the value of Disabled can't be used"),
                          HasSubstr("of Nice can't"), HasSubstr("of EnvironmentVariables.BAD can't"), "started", "here",
                          nice, "exited with 0"));
}

TEST_F(HostProgram, DisconnectsOnlyTheClientThatMisbehaves) {
  load(job("quiet", "true"));
  const auto connect = [&] {
    auto connection = connectToHost(places.socket);
    if (!connection) throw std::runtime_error(connection.error().text());
    return *std::move(connection);
  };
  const auto isCutOff = [](const FileDescriptor& connection) {
    wire::FrameReader reader;
    for (;;) {
      const auto frame = wire::receiveFrame(connection.number(), reader);
      if (!frame || !*frame) return true;
    }
  };
  const auto garbage = connect();
  ASSERT_GT(wire::sendUninterrupted(garbage.number(), std::string("\0\0\0\x08nonsense", 12)), 0);
  EXPECT_TRUE(isCutOff(garbage));
  const auto endless = connect();
  const std::string piece(65536, '\1');
  for (ssize_t sent = 1; sent > 0;) sent = wire::sendUninterrupted(endless.number(), piece);
  EXPECT_TRUE(isCutOff(endless));
  const auto silent = connect();
  {
    const auto leaves = connect();
    ASSERT_TRUE(
        wire::sendFrame(leaves.number(), {1, {{"request", "waitForEnd"}, {"label", "quiet"}, {"seconds", 60}}}));
  }
  const auto unknown = connect();
  ASSERT_TRUE(wire::sendFrame(unknown.number(), {.id = 7, .body = {{"request", "dance"}}}));
  wire::FrameReader reader;
  const auto answer = wire::receiveFrame(unknown.number(), reader);
  ASSERT_TRUE(answer && *answer);
  EXPECT_EQ(hostdata::Refusal::read((*answer)->body)->error.code, Error::Code::BadArgument);
  EXPECT_EQ(status().size(), 1U);
}

TEST_F(HostProgram, AWaitingRequestDelaysNoOtherAndCanBeCancelled) {
  Signpost ready(folder.path() / "ready");
  load(job("long", "echo > " + ready.quoted() + "; exec sleep 1000", {{"RunAtLoad", true}}));
  (void)ready.line();
  const auto connection = connectToHost(places.socket);
  ASSERT_TRUE(connection);
  wire::FrameReader reader;
  const auto send = [&](const wire::Frame& frame) {
    return static_cast<bool>(wire::sendFrame(connection->number(), frame));
  };
  const auto next = [&] {
    const auto frame = wire::receiveFrame(connection->number(), reader);
    return frame && *frame ? **frame : wire::Frame();
  };
  const auto waiting = hostdata::write(hostdata::WaitForEnd{.label = "long", .seconds = 60});
  for (const std::int64_t id : {1, 2}) ASSERT_TRUE(send({.id = id, .body = waiting}));
  ASSERT_TRUE(send({.id = 3, .body = hostdata::write(hostdata::Status())}));
  EXPECT_EQ(next().id, 3);
  ASSERT_TRUE(send({.id = 1, .kind = wire::Frame::Kind::Cancel}));
  const auto cancelled = next();
  EXPECT_EQ(cancelled.id, 1);
  EXPECT_EQ(hostdata::Refusal::read(cancelled.body)->error.code, Error::Code::Cancelled);
  unload("long");
  const auto ended = next();
  EXPECT_EQ(ended.id, 2);
  EXPECT_TRUE(messages::FieldReader::read<hostdata::WaitForEnd::Answer>(ended.body)->hasEnded);
  ASSERT_TRUE(send({.id = 4, .kind = wire::Frame::Kind::Event}));
  EXPECT_EQ(next(), wire::Frame()) << "the client is disconnected";
}

TEST_F(HostProgram, AWaitForAJobThatHangsEndsAtItsLimitAndTheJobGoesOn) {
  Signpost post(folder.path() / "post");
  load(lastingJob("hangs", post));
  const std::string process = post.words().at(0);
  EXPECT_FALSE(hasEnded("hangs", seconds(0)));
  EXPECT_TRUE(isAlive(process));
  EXPECT_EQ(status().at(0).process, std::stoi(process));
}

TEST_F(HostProgram, IsAccessibleToItsUserOnly) {
  load(job("quiet", "true"));
  EXPECT_EQ(fs::status(places.folder).permissions(), fs::perms::owner_all);
  EXPECT_EQ(fs::status(places.socket).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(HostProgram, HoldsAThousandIdleJobsAtLittleCost) {
  std::vector<fs::path> files;
  for (int i = 0; i < 1000; ++i) {
    const auto n = std::to_string(i);
    files.push_back(job("idle" + n, "true",
                        {{"StartCalendarInterval", propertylist::Dictionary{{"Hour", i % 24}, {"Minute", 0}}},
                         {"WatchPaths", propertylist::Array{(folder.path() / n).string()}}}));
  }
  fs::create_directories(places.folder);
  ASSERT_TRUE(LoadedJobs(places.folder / "loaded.plist").write(files));
  load(job("asks", "sed -n 's/VmRSS: *//p' /proc/$PPID/status; cut -d ' ' -f 14,15 /proc/$PPID/stat; getconf CLK_TCK",
           {{"RunAtLoad", true}}));
  EXPECT_TRUE(hasEnded("asks"));
  EXPECT_EQ(status().size(), 1001U);
  const auto lines = messagesOf("asks");
  ASSERT_EQ(lines.size(), 5U);
  const long kilobytes = std::stol(lines[1]);
  std::istringstream times(lines[2]);
  long user = 0;  // not that of the system, which looks for free inodes if many files were deleted just before
  times >> user;
  EXPECT_GT(kilobytes, 0);
#ifndef MIRVEL_SANITIZED
  EXPECT_LT(kilobytes, 20 * 1024);
  EXPECT_LT(user, std::stol(lines[3])) << "a second of the processor, to load them all";
#endif
}

}  // namespace
}  // namespace mirvel::host
