// When a host begins and ends, and how it is found meanwhile.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "core/support/RegularFile.h"
#include "helpers/host/Detachment.h"
#include "helpers/host/EnabledJobs.h"
#include "helpers/host/HostFixture.h"
#include "helpers/host/LoadedJobs.h"
#include "helpers/host/PathWatch.h"
#include "helpers/host/Session.h"
#include "helpers/jobhost/HostAutostart.h"

namespace mirvel::host {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

constexpr int longestWait = 60'000;  // milliseconds; then the test fails

/// A pipe with a name, to which jobs write.
class NamedPipe {
 public:
  explicit NamedPipe(const fs::path& path) : m_path(make(path)), m_end(::open(path.c_str(), O_RDONLY | O_NONBLOCK)) {}

  std::string path() const { return m_path.string(); }
  /// The next line; none: the last writer has gone, or there was nobody.
  std::optional<std::string> line() {
    std::string line;
    for (char c = 0; wait() && readUninterrupted(m_end.number(), &c, 1) == 1;) {
      if (c == '\n') return line;
      line += c;
    }
    return std::nullopt;
  }
  /// Keeps the pipe from ending between two writers.
  void keepOpen() { m_writer = FileDescriptor(::open(m_path.c_str(), O_WRONLY)); }

 private:
  static fs::path make(const fs::path& path) {
    if (::mkfifo(path.c_str(), 0600) != 0) throw std::runtime_error("no named pipe");
    return path;
  }
  bool wait() const {
    pollfd waiting{.fd = m_end.number(), .events = POLLIN, .revents = 0};
    return ::poll(&waiting, 1, longestWait) == 1;
  }

  fs::path m_path;
  FileDescriptor m_end, m_writer;
};

class HostLife : public HostFixture {
 protected:
  /// A job that tells its process, that of the host, and its display, and stays.
  fs::path lastingJob(const std::string& label, const NamedPipe& pipe, plist::Dictionary keys = {}) {
    keys.set("RunAtLoad", true);
    return job(label, "exec 9> '" + pipe.path() + "'; echo $$ $PPID $DISPLAY >&9; exec sleep 1000", std::move(keys));
  }

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

  /// Runs the host's program with a display, and waits until it goes on by itself.
  void startOn(const std::string& display, std::vector<std::string> arguments) {
    SystemProcessRunner session({{"PATH", "/usr/bin:/bin"}, {"HOME", folder.path()}, {"DISPLAY", display}});
    arguments.insert(arguments.end(), {"--detach", "--root", folder.path().string()});
    const auto result = session.run(MIRVEL_HOST, arguments);
    ASSERT_TRUE(result) << result.error().text();
    EXPECT_EQ(result->exitStatus, 0) << result->complaints;
  }

  std::vector<std::string> labels() {
    std::vector<std::string> result;
    for (const auto& job : status()) result.push_back(job.label);
    return result;
  }

  fs::path agent(const std::string& label, plist::Dictionary keys = {}) {
    const auto file = agentFolders(Roots::below(folder.path())).front() / (label + ".plist");
    keys.set("ProgramArguments", plist::Array{"/bin/true"});
    return folder.write(fs::relative(file, folder.path()), testdata::jobText(label, std::move(keys)));
  }

  static bool isAlive(std::int64_t process) {
    // One that has ended and isn't collected by whoever inherited it doesn't run any more.
    std::ifstream stat("/proc/" + std::to_string(process) + "/stat");
    std::string text;
    std::getline(stat, text);
    const auto name = text.rfind(") ");
    return name != std::string::npos && text[name + 2] != 'Z';
  }
};

struct Processes {
  std::int64_t job = 0;
  std::int64_t host = 0;
  std::string display;

  static Processes of(const std::optional<std::string>& line) {
    Processes result;
    std::istringstream(line.value_or("")) >> result.job >> result.host >> result.display;
    return result;
  }
};

TEST_F(HostLife, ALongPathToItsFolderIsNoObstacle) {
  fs::path deep = folder.path();
  for (int i = 0; i < 3; ++i) deep /= std::string(60, 'x');
  fs::create_directories(deep);
  EmbeddedHost far(EmbeddedHost::below(MIRVEL_HOST, deep), runner);
  const auto loaded = far.load(job("far", "true"));
  EXPECT_TRUE(loaded) << loaded.error().text();
  EXPECT_EQ(HostClient(Places::of(Roots::below(deep)).socket).status()->size(), 1U);
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
  EXPECT_EQ(HostClient(Places::of(roots).socket).status()->size(), 2U);
  EXPECT_TRUE(second.quit());
}

TEST_F(HostLife, IsReachedAgainAfterItsFolderWasRemovedAndKeepsItsJobs) {
  NamedPipe pipe(folder.path() / "pipe");
  load(lastingJob("stays", pipe));
  const auto before = Processes::of(pipe.line());
  for (const fs::path& removed : {places.socket, places.folder / "lock", places.folder}) {
    fs::rename(removed, folder.path() / "removed");  // all at once
    fs::remove_all(folder.path() / "removed");
    ASSERT_TRUE(appears(places.socket)) << removed;
    ASSERT_TRUE(appears(places.folder / "lock")) << removed;
    ASSERT_EQ(labels(), std::vector<std::string>{"stays"}) << removed;
    EXPECT_EQ(status().front().process, before.job) << "nothing has happened to it";
  }
  ASSERT_TRUE(appears(LoadedJobs::fileIn(places.folder)));
  ASSERT_TRUE(embedded.quit());
  ASSERT_TRUE(embedded.start());
  EXPECT_THAT(labels(), ElementsAre("stays"));
}

TEST_F(HostLife, HandsItsJobsToTheHostThatHasTakenItsPlace) {
  NamedPipe pipe(folder.path() / "pipe");
  pipe.keepOpen();
  load(lastingJob("first", pipe));
  const auto before = Processes::of(pipe.line());
  ASSERT_EQ(::kill(static_cast<pid_t>(before.host), SIGSTOP), 0);
  fs::remove_all(places.folder);
  load(job("second", "true"));
  ASSERT_EQ(::kill(static_cast<pid_t>(before.host), SIGCONT), 0);
  const auto after = Processes::of(pipe.line());
  EXPECT_NE(after.job, before.job);
  EXPECT_NE(after.host, before.host);
  EXPECT_FALSE(isAlive(before.job));
  EXPECT_THAT(labels(), ElementsAre("first", "second"));
}

TEST_F(HostLife, EndsWithTheMachineBelowAFolder) {
  const testdata::TemporaryFolder elsewhere;
  NamedPipe pipe(elsewhere.path() / "pipe");
  const auto machine = elsewhere.path() / "machine";
  fs::create_directory(machine);
  EmbeddedHost other(EmbeddedHost::below(MIRVEL_HOST, machine), runner);
  ASSERT_TRUE(other.load(lastingJob("stays", pipe)));
  ASSERT_NE(pipe.line(), std::nullopt);
  fs::rename(machine, elsewhere.path() / "removed");
  EXPECT_EQ(pipe.line(), std::nullopt) << "the job is stopped";
  EXPECT_FALSE(fs::exists(machine));
}

TEST_F(HostLife, SurvivesThatItsStarterHasGone) {
  NamedPipe pipe(folder.path() / "pipe");
  pipe.keepOpen();
  const pid_t child = ::fork();
  if (child == 0) {
    ::signal(SIGPIPE, SIG_DFL);
    const int parent = ::getpid();
    Detachment detachment;
    if (!detachment.fork()) ::_exit(0);
    while (::getppid() == parent) ::sched_yield();
    const int out = ::open(pipe.path().c_str(), O_WRONLY);
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
  NamedPipe pipe(folder.path() / "pipe");
  pipe.keepOpen();
  startOn(":1", {"--login"});
  load(lastingJob("shows", pipe));
  const auto first = Processes::of(pipe.line());
  EXPECT_EQ(first.display, ":1");
  startOn(":1", {"--login"});
  startOn(":2", {});  // no login: somebody only wants a host, and there is one
  EXPECT_EQ(status().front().process, first.job);
  startOn(":2", {"--login"});
  const auto second = Processes::of(pipe.line());
  EXPECT_EQ(second.display, ":2");
  EXPECT_FALSE(isAlive(first.job));
  EXPECT_THAT(labels(), ElementsAre("shows"));
}

TEST_F(HostLife, ALoginAndAStartLoadTheEnabledJobsOfTheFolders) {
  agent("enabled");
  agent("disabled", {{"Disabled", true}});
  folder.write("home/.config/mirvel/LaunchAgents/no job.txt", testdata::jobText("text"));
  startOn(":1", {"--login"});
  EXPECT_THAT(labels(), ElementsAre("enabled"));
  agent("later");
  const auto broken = agent("broken");
  std::ofstream(broken) << "garbage <";
  ASSERT_TRUE(embedded.start());
  EXPECT_THAT(labels(), ElementsAre("enabled", "later"));
  const auto lines = embedded.log(seconds(60), "broken.plist");
  ASSERT_TRUE(lines);
  EXPECT_EQ(lines->size(), 1U);
  EXPECT_TRUE(fs::exists(Roots::below(folder.path()).ownAutostart / HostAutostart::fileName));
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
}

}  // namespace
}  // namespace mirvel::host
