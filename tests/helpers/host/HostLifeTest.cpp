// When a host begins and ends, and how it is found meanwhile.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <functional>
#include <future>
#include <sstream>
#include <thread>

#include "helpers/host/FileSystemWatch.h"
#include "helpers/host/HostFixture.h"
#include "helpers/host/Lifeline.h"
#include "helpers/host/Session.h"
#include "helpers/hostdata/EnabledJobs.h"
#include "helpers/jobhost/HostAutostart.h"
#include "helpers/process/Detachment.h"

namespace mirvel::host {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

class HostLife : public HostFixture {
 protected:
  enum class Detached { Yes, No };

  /// Waits until there is something at the path.
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

  /// Waits until the process has ended.
  static bool ends(const std::string& process) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(longestWait);
    while (isAlive(process) && std::chrono::steady_clock::now() < until) std::this_thread::yield();
    return !isAlive(process);
  }

  /// Stops a host while its folder is removed, and another host loads a job and ends.
  void replaceBriefly(const std::string& host, const fs::path& jobOfOther, const std::function<void()>& meanwhile) {
    ASSERT_EQ(::kill(std::stoi(host), SIGSTOP), 0);
    fs::remove_all(places.folder);
    load(jobOfOther);
    meanwhile();
    ASSERT_TRUE(embedded.quit());
  }

  /// Runs the host's program with a display, and waits until it goes on by itself, or until it ends.
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

/// What `lastingJob` tells.
struct Processes {
  std::string job, host, display;

  explicit Processes(Signpost& post) { std::istringstream(post.line()) >> job >> host >> display; }
};

TEST_F(HostLife, ALongPathToItsFolderIsNoObstacle) {
  fs::path deep = folder.path();
  for (int i = 0; i < 3; ++i) deep /= std::string(60, 'x');
  fs::create_directories(deep);
  EmbeddedHost far(EmbeddedHost::below(MIRVEL_HOST, deep), runner);
  const auto loaded = far.load(job("far", "true"));
  EXPECT_TRUE(loaded) << loaded.error().text();
  EXPECT_EQ(HostClient(HostPlaces::of(Roots::below(deep)).socket).status()->size(), 1U);
  EXPECT_TRUE(far.quit());
}

TEST_F(HostLife, IsFoundWhateverTheRuntimeFolderOfWhoAsks) {
#ifdef __APPLE__
  GTEST_SKIP() << "the home folder isn't told by the environment here";
#endif
  const Roots roots = Roots::ofLinux(folder.path(), {});
  const auto settings = EmbeddedHost::ofUser(MIRVEL_HOST, roots);
  const auto withRuntime = [&](const std::string& name) {
    fs::create_directory(folder.path() / name);
    return SystemProcessRunner(
        {{"PATH", "/usr/bin:/bin"}, {"HOME", folder.path()}, {"XDG_RUNTIME_DIR", (folder.path() / name).string()}});
  };
  auto desktop = withRuntime("desktop"), terminal = withRuntime("terminal");
  EmbeddedHost first(settings, desktop), second(settings, terminal);
  ASSERT_TRUE(first.load(job("one", "true")));
  EXPECT_FALSE(second.load(folder.path() / "jobs" / "one.plist")) << "it is loaded already";
  ASSERT_TRUE(second.load(job("two", "true")));
  EXPECT_EQ(HostClient(HostPlaces::of(roots).socket).status()->size(), 2U);
  EXPECT_TRUE(second.quit());
}

TEST_F(HostLife, IsReachedAgainAfterItsFolderWasRemovedAndKeepsItsJobs) {
  Signpost pipe(folder.path() / "pipe");
  load(job("stays", "sleep 1000 & echo $$ $PPID $! > " + pipe.quoted() + "; wait", {{"RunAtLoad", true}}));
  const auto before = pipe.words();
  ASSERT_EQ(before.size(), 3U);
  for (const fs::path& removed : {places.socket, places.folder / "lock", places.folder}) {
    fs::rename(removed, folder.path() / "removed");  // all at once
    fs::remove_all(folder.path() / "removed");
    ASSERT_TRUE(appears(places.socket)) << removed;
    ASSERT_TRUE(appears(places.folder / "lock")) << removed;
    ASSERT_EQ(labels(), std::vector<std::string>{"stays"}) << removed;
    EXPECT_EQ(status().front().process, std::stoi(before[0])) << "nothing has happened to it";
  }
  ASSERT_TRUE(appears(places.loadedJobs()));
  ::kill(std::stoi(before[1]), SIGKILL);
  ASSERT_TRUE(ends(before[1]));
  startNext();
  EXPECT_NE(pipe.words().front(), before[0]);
  EXPECT_FALSE(isAlive(before[2])) << "the run is noted anew, too, and what a killed host has left of it is ended";
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
  EXPECT_THAT(noted(), testing::UnorderedElementsAre(first, second, missing));
}

TEST_F(HostLife, LosesNoJobsToAHostThatIsThereOnlyMeanwhile) {
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
  EXPECT_THAT(noted(), testing::UnorderedElementsAre(first, second, slow));
}

TEST_F(HostLife, NotesItsJobsAnewAsSoonAsThatCanBe) {
  Signpost pipe(folder.path() / "pipe");
  const auto lifeline = Lifeline::hold(folder.path());
  ASSERT_TRUE(lifeline);
  const auto file = lastingJob("stays", pipe);
  load(file);
  const Processes before(pipe);
  const auto list = places.loadedJobs();
  ASSERT_EQ(::kill(std::stoi(before.host), SIGSTOP), 0);
  fs::remove_all(places.folder);
  fs::create_directories(list);  // as good as a full disk: nothing can be written there
  ASSERT_EQ(::chmod(places.folder.c_str(), 0700), 0);
  ASSERT_EQ(::kill(std::stoi(before.host), SIGCONT), 0);
  ASSERT_TRUE(appears(places.socket));
  EXPECT_THAT(labels(), ElementsAre("stays")) << "it has looked, and couldn't note them";
  ASSERT_EQ(::write(lifeline->number(), "x", 1), 1);  // which is no end
  EXPECT_THAT(labels(), ElementsAre("stays"));
  fs::remove(list);
  ASSERT_TRUE(appears(list));
  EXPECT_THAT(noted(), ElementsAre(file));
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

TEST_F(HostLife, EndsWithWhoeverMadeTheMachineEvenIfTheMachineStays) {
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
  EXPECT_FALSE(embedded.load(file)) << "there is no host for a machine that was left";
}

TEST_F(HostLife, SurvivesThatItsStarterHasGone) {
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

TEST_F(HostLife, StartsWithoutStandardFiles) {
  const std::string command = "exec '" MIRVEL_HOST "' --detach --root '" + folder.path().string() + "' <&- >&- 2>&-";
  const auto result = runner.run("/bin/sh", {"-c", command});
  ASSERT_TRUE(result);
  EXPECT_EQ(result->exitStatus, 0);
  EXPECT_THAT(status(), testing::IsEmpty());
  load(job("talker", "echo said", {{"RunAtLoad", true}}));
  EXPECT_TRUE(hasEnded("talker"));
  EXPECT_THAT(said("talker"), ElementsAre("started", "said", "exited with 0"));
}

TEST_F(HostLife, FilesOfJobsAreNoMoreOpenThanTheUsersOwn) {
  const mode_t before = ::umask(0077);
  const auto out = folder.path() / "out";
  load(job("writer", "umask", {{"RunAtLoad", true}, {"StandardOutPath", out.string()}}));
  ::umask(before);
  EXPECT_TRUE(hasEnded("writer"));
  struct stat file {};
  ASSERT_EQ(::stat(out.c_str(), &file), 0);
  EXPECT_EQ(file.st_mode & 0777U, 0600U);
  EXPECT_EQ(testdata::bytes(out), "0077\n");
}

TEST_F(HostLife, ALoginStartsAnewUnlessItIsOfTheSameSession) {
  Signpost pipe(folder.path() / "pipe");
  EXPECT_TRUE(startOn(":1", {"--login"}));
  load(lastingJob("shows", pipe));
  const Processes first(pipe);
  EXPECT_EQ(first.display, ":1");
  EXPECT_TRUE(startOn(":1", {"--login"}));
  EXPECT_TRUE(startOn(":2", {}));  // no login: somebody only wants a host, and there is one
  EXPECT_EQ(status().front().process, std::stoi(first.job));
  EXPECT_TRUE(startOn(":2", {"--login"}));
  const Processes second(pipe);
  EXPECT_EQ(second.display, ":2");
  EXPECT_FALSE(isAlive(first.job));
  EXPECT_THAT(labels(), ElementsAre("shows"));
}

TEST_F(HostLife, ASecondLoginLeavesTheJobsToTheFirstUntilThatIsOver) {
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

TEST_F(HostLife, NobodyFollowsAHostThatWasAskedToEnd) {
  folder.write("run/systemd/sessions/c1", "STATE=active\n");
  EXPECT_TRUE(startOn(":1", {"--login"}, "c1"));
  const auto successor = client.connect();
  ASSERT_TRUE(successor);
  const hostdata::BeginSession session{.environment = {{"DISPLAY", ":2"}}, .folders = {}};
  const auto answer = HostClient::askAt(*successor, session, longestAnswer);
  ASSERT_TRUE(answer) << answer.error().text();
  EXPECT_TRUE(answer->staysOpen);
  ASSERT_TRUE(embedded.quit());
  char byte = 0;
  EXPECT_EQ(readUninterrupted(successor->number(), &byte, 1), 1) << "it isn't only hung up";
}

TEST_F(HostLife, ASuccessorEndsWithTheHostThatWasAskedTo) {
  folder.write("run/systemd/sessions/c1", "STATE=active\n");
  folder.write("run/systemd/sessions/c2", "STATE=active\n");
  EXPECT_TRUE(startOn(":1", {"--login"}, "c1"));
  Signpost pipe(folder.path() / "pipe");
  const auto agents = agentFolders(Roots::below(folder.path())).front();
  fs::create_directories(agents);
  fs::copy_file(lastingJob("told", pipe), agents / "told.plist");
  auto successor = std::async(std::launch::async, [&] { return startOn(":2", {"--login"}, "c2", Detached::No); });
  pipe.line();  // what the second login brings is loaded by the host of the first
  ASSERT_TRUE(embedded.quit());
  EXPECT_EQ(successor.wait_for(std::chrono::milliseconds(longestWait)), std::future_status::ready);
  EXPECT_TRUE(embedded.quit());  // or this test would never end
  EXPECT_TRUE(successor.get());
  EXPECT_FALSE(fs::exists(places.socket));
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
  const auto lines = embedded.log(seconds(60), "broken.plist");
  ASSERT_TRUE(lines);
  EXPECT_EQ(lines->size(), 1U);
  const auto reasons = embedded.log(seconds(60), "the value of Disabled can't be used");
  ASSERT_TRUE(reasons);
  EXPECT_EQ(reasons->size(), 2U) << "at the login and at the start";
  load(unclear);
  restart();
  EXPECT_THAT(labels(), ElementsAre("enabled", "later")) << "somebody asked for it then";
  EXPECT_TRUE(fs::exists(Roots::below(folder.path()).ownAutostart / HostAutostart::fileName));
}

TEST_F(HostLife, WhatIsAskedOfAHostThatIsEndingIsDoneByTheNext) {
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

TEST_F(HostLife, IsNotStartedToUnloadWhatCannotBeLoaded) {
  EXPECT_TRUE(embedded.unload("/nothing", "nothing"));
  const auto asked = client.status();
  ASSERT_FALSE(asked);
  EXPECT_TRUE(HostClient::isNoHost(asked.error()));
}

TEST_F(HostLife, ItsAutostartEntryIsRenewedWhenTheProgramMoved) {
  struct Row {
    const char* before;
    const char* after;
  };
  const Row rows[] = {
      {"[Desktop Entry]\nExec=\"/old/mirvel-host\" --detach\n",
       "[Desktop Entry]\nExec=\"/new/mirvel-host\" --login --detach\n"},
      {"Exec=\"/old/mirvel-host\" --login --detach\nHidden=true\n",
       "Exec=\"/new/mirvel-host\" --login --detach\nHidden=true\n"},
      {"Hidden=true\nExec=\"/old/mirvel-host\" --detach --root \"/a b\"",
       "Hidden=true\nExec=\"/new/mirvel-host\" --login --detach"},
      // What somebody made of it stays.
      {"Exec=nice \"/old/mirvel-host\" --detach\n", nullptr},
      {"Exec=\"/old/mirvel-host\" --detach --verbose\n", nullptr},
      {"Exec=\"/old/other\" --detach\n", nullptr},
      {"TryExec=\"/old/mirvel-host\" --detach\n", nullptr},
      {"Hidden=true\n", nullptr},
      {"", nullptr},
  };
  for (const Row& row : rows) {
    const auto entry = folder.write(HostAutostart::fileName, row.before);
    ASSERT_TRUE(HostAutostart(folder.path(), {"/new/mirvel-host", "--login", "--detach"}).install());
    EXPECT_EQ(testdata::bytes(entry), row.after ? row.after : row.before);
  }
}

TEST_F(HostLife, ASessionIsOverWhenItsRecordSaysSo) {
  struct Row {
    const char* record;  ///< null: it is removed
    bool isOver;
  };
  const Row rows[] = {{"UID=1\nACTIVE=1\nSTATE=active\n", false},
                      {"UID=1\nSTATE=online\n", false},
                      {"UID=1\nACTIVE=0\nSTATE=closing\n", true},
                      {"STATE=closing\n", true},
                      {"OLD_STATE=closing\nSTATE=active\n", false},
                      {"", false},
                      {nullptr, true}};
  for (const Row& row : rows) {
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
  EXPECT_FALSE(Session({{"XDG_SESSION_ID", "c2"}}, folder.path()).isOver()) << "what it outlived has no more to say";
}

}  // namespace
}  // namespace mirvel::host
