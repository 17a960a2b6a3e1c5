// The life of a host process: start, end, sessions, replacement.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <functional>
#include <future>
#include <sstream>

#include "helpers/host/FileSystemWatch.h"
#include "helpers/host/HostFixture.h"
#include "helpers/host/Lifeline.h"
#include "helpers/host/Session.h"
#include "helpers/hostdata/EnabledJobs.h"
#include "helpers/jobhost/HostAutostart.h"
#include "helpers/process/Detachment.h"
#include "helpers/wire/FrameSocket.h"

namespace mirvel::host {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

class HostLife : public HostFixture {
 protected:
  enum class Detached { Yes, No };

  /// Waits until a file exists at the path.
  static bool appears(const fs::path& path) {
    const auto watch = makePathWatch();
    watch->add(path.string());
    while (!fs::exists(path)) {
      pollfd waiting{.fd = watch->descriptor(), .events = POLLIN, .revents = 0};
      const int found = ::poll(&waiting, 1, watch->descriptor() < 0 ? 100 : longestWait);
      if (found == 0 && watch->descriptor() >= 0) return false;
      (void)watch->take();
    }
    return true;
  }

  /// Stops a host (SIGSTOP) while its folder is removed and another host loads a job and ends.
  void replaceBriefly(const std::string& host, const fs::path& jobOfOther, const std::function<void()>& meanwhile) {
    ASSERT_EQ(::kill(std::stoi(host), SIGSTOP), 0);
    fs::remove_all(places.folder);
    load(jobOfOther);
    meanwhile();
    ASSERT_TRUE(embedded.quit());
  }

  /// Starts the program in a session with that display and ID; waits until it has detached, or has ended.
  bool startOn(const std::string& display, std::vector<std::string> arguments, const std::string& number = {},
               Detached detached = Detached::Yes) {
    SystemProcessRunner session(
        {{"PATH", "/usr/bin:/bin"}, {"HOME", folder.path()}, {"DISPLAY", display}, {"XDG_SESSION_ID", number}});
    arguments.insert(arguments.end(), {"--root", folder.path().string()});
    if (detached == Detached::Yes) arguments.emplace_back("--detach");
    const auto result = session.run(MIRVEL_HOST, arguments);
    return result && result->exitStatus == 0;
  }

  fs::path agent(const std::string& label, propertylist::Dictionary keys = {}) {
    const auto file = agentFolders(Roots::below(folder.path())).front() / (label + ".plist");
    keys.set("ProgramArguments", propertylist::Array{"/bin/true"});
    return folder.write(fs::relative(file, folder.path()), testdata::jobText(label, std::move(keys)));
  }
};

/// The line that `lastingJob` writes.
struct Processes {
  std::string job, host, display;

  explicit Processes(Signpost& post) { std::istringstream(post.line()) >> job >> host >> display; }
};

TEST_F(HostLife, CreatesItsFilesAgainAfterTheyWereRemoved) {
  Signpost pipe(folder.path() / "pipe");
  load(job("stays", "sleep 1000 & echo $$ $PPID $! > " + pipe.quoted() + "; wait", {{"RunAtLoad", true}}));
  const auto before = pipe.words();
  ASSERT_EQ(before.size(), 3U);
  for (const fs::path& removed : {places.socket, places.folder / "lock", places.folder}) {
    fs::rename(removed, folder.path() / "removed");  // all at once
    fs::remove_all(folder.path() / "removed");
    ASSERT_TRUE(appears(places.socket)) << removed;
    ASSERT_TRUE(appears(places.folder / "lock")) << removed;
    ASSERT_TRUE(eventually([this] { return static_cast<bool>(client.status()); }))
        << "the socket exists before it listens";
    ASSERT_EQ(labels(), std::vector<std::string>{"stays"}) << removed;
    EXPECT_EQ(status().front().process, std::stoi(before[0])) << "the job isn't affected";
  }
  ASSERT_TRUE(appears(places.loadedJobs()));
  ::kill(std::stoi(before[1]), SIGKILL);
  ASSERT_TRUE(ends(before[1]));
  startNext();
  EXPECT_NE(pipe.words().front(), before[0]);
  EXPECT_FALSE(isAlive(before[2])) << "the run is recorded again, too, so the next host stops what is left of it";
  EXPECT_THAT(labels(), ElementsAre("stays"));
}

TEST_F(HostLife, HandsItsJobsToTheHostThatHasTakenItsPlace) {
  Signpost pipe(folder.path() / "pipe"), stubborn(folder.path() / "stubborn");
  const auto first = lastingJob("first", pipe), second = job("second", "true"), missing = job("missing", "true");
  load(missing);
  fs::remove(missing);
  restart();
  load(first);
  const Processes before(pipe);
  load(stubbornJob("unloaded", stubborn));
  const auto left = stubborn.words();
  (void)client.ask(hostdata::Unload{.label = "unloaded", .seconds = 0});
  ASSERT_TRUE(embedded.loadTemporarily(job("tried", "true")));
  ASSERT_EQ(::kill(std::stoi(before.host), SIGSTOP), 0);
  fs::remove_all(places.folder);
  load(second);
  ASSERT_EQ(::kill(std::stoi(before.host), SIGCONT), 0);
  const Processes after(pipe);
  EXPECT_NE(after.job, before.job);
  EXPECT_NE(after.host, before.host);
  for (const auto& process : {before.job, left.front()}) EXPECT_FALSE(isAlive(process));
  EXPECT_THAT(labels(), ElementsAre("first", "second"));
  EXPECT_THAT(saved(), testing::UnorderedElementsAre(first, second, missing));
}

TEST_F(HostLife, LosesNoJobsToAHostThatRunsOnlyMeanwhile) {
  Signpost pipe(folder.path() / "pipe"), stubborn(folder.path() / "stubborn");
  const auto first = lastingJob("first", pipe), slow = stubbornJob("slow", stubborn), second = job("second", "true");
  load(first);
  load(slow);
  const Processes before(pipe);
  const auto goOn = [&] { EXPECT_EQ(::kill(std::stoi(before.host), SIGCONT), 0); };
  replaceBriefly(before.host, second, [] {});
  goOn();
  ASSERT_TRUE(appears(places.socket));
  EXPECT_THAT(labels(), ElementsAre("first", "second", "slow")) << "it is the host again";
  EXPECT_TRUE(isAlive(before.job));
  ASSERT_TRUE(embedded.unload(second, "second"));
  replaceBriefly(before.host, second, [&] {
    goOn();
    EXPECT_TRUE(pipe.isDeserted()) << "it ends, since another has taken its place";
  });
  ASSERT_TRUE(ends(before.host));
  EXPECT_THAT(saved(), testing::UnorderedElementsAre(first, second, slow));
}

TEST_F(HostLife, SavesItsJobsAgainAsSoonAsPossible) {
  Signpost pipe(folder.path() / "pipe");
  const auto lifeline = Lifeline::hold(folder.path());
  ASSERT_TRUE(lifeline);
  const auto file = lastingJob("stays", pipe);
  load(file);
  const Processes before(pipe);
  const auto list = places.loadedJobs();
  ASSERT_EQ(::kill(std::stoi(before.host), SIGSTOP), 0);
  fs::remove_all(places.folder);
  fs::create_directories(list);  // like a full disk: the list can't be written
  ASSERT_EQ(::chmod(places.folder.c_str(), 0700), 0);
  ASSERT_EQ(::kill(std::stoi(before.host), SIGCONT), 0);
  ASSERT_TRUE(appears(places.socket));
  EXPECT_THAT(labels(), ElementsAre("stays")) << "it has checked, and couldn't save them";
  ASSERT_EQ(::write(lifeline->number(), "x", 1), 1);  // which doesn't cut it
  EXPECT_THAT(labels(), ElementsAre("stays"));
  fs::remove(list);
  ASSERT_TRUE(appears(list));
  EXPECT_THAT(saved(), ElementsAre(file));
}

TEST_F(HostLife, EndsWithTheMachineBelowAFolder) {
  const testdata::TemporaryFolder elsewhere;
  Signpost pipe(elsewhere.path() / "pipe");
  const auto machine = elsewhere.path() / "machine";
  fs::create_directory(machine);
  EmbeddedHost other(EmbeddedHost::below(MIRVEL_HOST, machine), runner);
  ASSERT_TRUE(other.load(lastingJob("stays", pipe)));
  pipe.line();
  fs::rename(machine, elsewhere.path() / "removed");
  EXPECT_TRUE(pipe.isDeserted()) << "the job is stopped";
  EXPECT_FALSE(fs::exists(machine));
}

TEST_F(HostLife, EndsWithTheCreatorOfTheMachineEvenIfTheFolderStays) {
  Signpost pipe(folder.path() / "pipe");
  auto lifeline = Lifeline::hold(folder.path());
  ASSERT_TRUE(lifeline) << lifeline.error().text();
  const auto file = lastingJob("stays", pipe);
  load(file);
  const Processes before(pipe);
  EXPECT_TRUE(isAlive(before.job));
  lifeline->reset();
  EXPECT_TRUE(pipe.isDeserted()) << "the job is stopped";
  ASSERT_TRUE(ends(before.host));
  EXPECT_FALSE(embedded.load(file)) << "no host starts for a machine without its creator";
}

TEST_F(HostLife, SurvivesTheEndOfItsStarter) {
  Signpost pipe(folder.path() / "pipe");
  const pid_t child = ::fork();
  if (child == 0) {
    ::signal(SIGPIPE, SIG_DFL);
    const int parent = ::getpid();
    Detachment detachment;
    if (!detachment.fork()) ::_exit(0);
    while (::getppid() == parent) ::sched_yield();
    const int out = ::open((folder.path() / "pipe").c_str(), O_WRONLY);
    detachment.complete();
    (void)!::write(out, "survived\n", 9);
    ::_exit(0);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(pipe.line(), "survived");
}

TEST_F(HostLife, ALoginReplacesTheHostUnlessItIsOfTheSameSession) {
  Signpost pipe(folder.path() / "pipe");
  EXPECT_TRUE(startOn(":1", {"--login"}));
  load(lastingJob("shows", pipe));
  const Processes first(pipe);
  EXPECT_EQ(first.display, ":1");
  EXPECT_TRUE(startOn(":1", {"--login"}));
  EXPECT_TRUE(startOn(":2", {}));  // no login, and there is a host
  EXPECT_EQ(status().front().process, std::stoi(first.job));
  EXPECT_TRUE(startOn(":2", {"--login"}));
  const Processes second(pipe);
  EXPECT_EQ(second.display, ":2");
  EXPECT_FALSE(isAlive(first.job));
  EXPECT_THAT(labels(), ElementsAre("shows"));
}

TEST_F(HostLife, ASecondLoginTakesOverWhenTheFirstSessionIsOver) {
  Signpost pipe(folder.path() / "pipe");
  folder.write("run/systemd/sessions/c1", "STATE=active\n");
  folder.write("run/systemd/sessions/c2", "STATE=active\n");
  EXPECT_TRUE(startOn(":1", {"--login"}, "c1"));
  load(lastingJob("shows", pipe));
  const Processes first(pipe);
  agent("later");
  EXPECT_TRUE(startOn(":2", {"--login"}, "c2"));
  EXPECT_EQ(status().front().process, std::nullopt);
  EXPECT_EQ(status().back().process, std::stoi(first.job));
  EXPECT_THAT(labels(), ElementsAre("later", "shows")) << "a login loads the jobs of the folders all the same";
  folder.write("run/systemd/sessions/c1", "STATE=closing\n");
  EXPECT_EQ(Processes(pipe).display, ":2");
  EXPECT_FALSE(isAlive(first.job));
  EXPECT_THAT(labels(), ElementsAre("later", "shows"));
}

TEST_F(HostLife, ASuccessorEndsWithAHostThatIsAskedToEnd) {
  folder.write("run/systemd/sessions/c1", "STATE=active\n");
  folder.write("run/systemd/sessions/c2", "STATE=active\n");
  EXPECT_TRUE(startOn(":1", {"--login"}, "c1"));
  Signpost pipe(folder.path() / "pipe");
  const auto agents = agentFolders(Roots::below(folder.path())).front();
  fs::create_directories(agents);
  fs::copy_file(lastingJob("shared", pipe), agents / "shared.plist");
  auto successor = std::async(std::launch::async, [&] { return startOn(":2", {"--login"}, "c2", Detached::No); });
  pipe.line();  // the host of the first session loads the jobs for the second login
  ASSERT_TRUE(embedded.quit());
  EXPECT_EQ(successor.wait_for(std::chrono::milliseconds(longestWait)), std::future_status::ready);
  EXPECT_TRUE(embedded.quit());  // in case the successor has taken over: the test would wait for it
  EXPECT_TRUE(successor.get());
  EXPECT_FALSE(fs::exists(places.socket));
}

TEST_F(HostLife, ASuccessorNoticesASecondReplyThatComesWithTheFirst) {
  using Answer = hostdata::BeginSession::Answer;
  folder.write("run/systemd/sessions/c2", "STATE=active\n");
  ASSERT_TRUE(places.make());
  auto lock = lockHost(places);  // this test is the host
  auto listening = listenAt(places.socket);
  ASSERT_TRUE(lock && *lock && listening);
  auto successor = std::async(std::launch::async, [&] { return startOn(":2", {"--login"}, "c2", Detached::No); });
  pollfd waiting{.fd = listening->number(), .events = POLLIN, .revents = 0};
  ASSERT_EQ(::poll(&waiting, 1, longestWait), 1);
  FileDescriptor connection(::accept(listening->number(), nullptr, nullptr));
  wire::FrameReader reader;
  const auto request = wire::receiveFrame(connection.number(), reader);
  ASSERT_TRUE(request && *request);
  std::string replies;
  for (const bool staysOpen : {true, false}) {
    const auto body = messages::FieldWriter::write(Answer{.staysOpen = staysOpen});
    replies += *wire::encode({.id = (*request)->id, .body = body});
  }
  ASSERT_EQ(wire::sendUninterrupted(connection.number(), replies), static_cast<ssize_t>(replies.size()));
  listening->reset();
  lock->reset();
  connection.reset();
  EXPECT_EQ(successor.wait_for(std::chrono::milliseconds(longestWait)), std::future_status::ready);
  EXPECT_TRUE(embedded.quit());  // in case the successor has taken over: the test would wait for it
}

TEST_F(HostLife, ALoginAndAStartLoadTheEnabledJobsOfTheFolders) {
  agent("enabled");
  agent("disabled", {{"Disabled", true}});
  const auto unclear = agent("unclear", {{"Disabled", "yes"}});
  folder.write("home/.config/mirvel/LaunchAgents/no job.txt", testdata::jobText("text"));
  EXPECT_TRUE(startOn(":1", {"--login"}));
  EXPECT_THAT(labels(), ElementsAre("enabled"));
  agent("later");
  const auto broken = agent("broken");
  std::ofstream(broken) << "garbage <";
  ASSERT_TRUE(embedded.start());
  EXPECT_THAT(labels(), ElementsAre("enabled", "later"));
  const std::string reason = "the value of Disabled can't be used";
  EXPECT_THAT(messagesOf("mirvel-host"),
              ElementsAre(testing::HasSubstr(reason), testing::HasSubstr("broken.plist"), testing::HasSubstr(reason)))
      << "at the login and at the start";
  load(unclear);
  restart();
  EXPECT_THAT(labels(), ElementsAre("enabled", "later")) << "it was loaded on request only";
  EXPECT_THAT(
      testdata::bytes(Roots::below(folder.path()).ownAutostart / HostAutostart::fileName),
      testing::HasSubstr("Exec=\"" MIRVEL_HOST "\" --login --detach --root \"" + folder.path().string() + "\"\n"));
}

TEST_F(HostLife, RequestsToAHostThatIsShuttingDownAreExecutedByTheNext) {
  Signpost post(folder.path() / "post"), willing(folder.path() / "willing");
  const auto stubborn = stubbornJob("stubborn", post), loaded = job("loaded", "true");
  const struct {
    const char* name;
    std::function<bool()> isDone;
    std::vector<std::string> labels;
  } rows[] = {
      {"load", [&] { return static_cast<bool>(embedded.load(loaded)); }, {"loaded", "stubborn", "willing"}},
      {"start", [&] { return static_cast<bool>(embedded.start()); }, {"agent", "loaded", "stubborn", "willing"}},
      {"login", [&] { return startOn(":1", {"--login"}); }, {"agent", "loaded", "stubborn", "willing"}},
      {"unload",
       [&] { return static_cast<bool>(embedded.unload(stubborn, "stubborn")); },
       {"agent", "loaded", "willing"}},
  };
  load(stubborn);
  load(lastingJob("willing", willing));
  agent("agent");
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const auto before = post.words();
    ASSERT_EQ(before.size(), 2U);
    willing.line();
    ASSERT_EQ(::kill(std::stoi(before[1]), SIGTERM), 0);
    ASSERT_TRUE(willing.isDeserted()) << "all jobs are asked to end";
    EXPECT_TRUE(row.isDone());
    EXPECT_EQ(labels(), row.labels);
    EXPECT_FALSE(isAlive(before[0]));
  }
}

TEST_F(HostLife, ASessionIsOverWhenItsRecordSaysSo) {
  const struct {
    const char* record;  ///< null: the record is removed
    bool isOver;
  } rows[] = {{"UID=1\nACTIVE=1\nSTATE=active\n", false},
              {"UID=1\nSTATE=online\n", false},
              {"UID=1\nACTIVE=0\nSTATE=closing\n", true},
              {"STATE=closing\n", true},
              {"OLD_STATE=closing\nSTATE=active\n", false},
              {"", false},
              {nullptr, true}};
  for (const auto& row : rows) {
    folder.write("c2", "STATE=active\n");
    const Session session({{"XDG_SESSION_ID", "c2"}}, folder.path());
    EXPECT_EQ(session.record(), folder.path() / "c2");
    row.record ? (void)folder.write("c2", row.record) : (void)fs::remove(folder.path() / "c2");
    EXPECT_EQ(session.isOver(), row.isOver) << (row.record ? row.record : "none");
  }
  for (const char* const number : {"", "..", "../c2", ".", "no such"}) {
    EXPECT_EQ(Session({{"XDG_SESSION_ID", number}}, folder.path()).record(), fs::path()) << number;
  }
  EXPECT_FALSE(Session({}, folder.path()).isOver());
  folder.write("c2", "STATE=closing\n");
  EXPECT_FALSE(Session({{"XDG_SESSION_ID", "c2"}}, folder.path()).isOver())
      << "the host outlives a session that was already over";
}

}  // namespace
}  // namespace mirvel::host
