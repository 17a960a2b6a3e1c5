#include "helpers/process/CleanState.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <grp.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#endif

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>

#include "core/files/RegularFile.h"
#include "core/process/FileDescriptor.h"
#include "core/process/ProcessStatus.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

TEST(ProcessIdentityTest, ANumberThatIsUsedAgainIsAnotherProcess) {
  const auto own = ProcessIdentity::ofThisProcess();
  EXPECT_EQ(own.id, ::getpid());
  EXPECT_EQ(ProcessIdentity::from(own.text()), own);
  const pid_t child = ::fork();
  if (child == 0) ::_exit(0);
  const auto other = ProcessIdentity::of(child);  // even a zombie has a start time
  ::waitpid(child, nullptr, 0);
  ASSERT_TRUE(other);
  EXPECT_GE(other->start, own.start);
  EXPECT_FALSE(ProcessIdentity::of(child));
  for (const char* text : {"", "5", "5:", ":5", "x:5", "0:5", "-5:5", "99999999999:5"}) {
    EXPECT_FALSE(ProcessIdentity::from(text)) << text;
  }
}

#ifdef __linux__

namespace fs = std::filesystem;

/// Returns the output of a shell script that a child process runs after calling a function.
std::string printedAfter(const std::function<void()>& doing, const std::string& script) {
  Pipe output = Pipe::make();
  const pid_t child = ::fork();
  if (child == 0) {
    ::dup2(output.write.number(), STDOUT_FILENO);
    doing();
    ::execl("/bin/bash", "bash", "-c", script.c_str(), nullptr);
    ::_exit(1);
  }
  output.write.reset();
  std::string printed;
  std::array<char, 4096> buffer;
  for (ssize_t count = 0; (count = readUninterrupted(output.read.number(), buffer.data(), buffer.size())) > 0;) {
    printed.append(buffer.data(), static_cast<std::size_t>(count));
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return printed;
}

void write(const char* file, const char* text) {
  const FileDescriptor open(::open(file, O_WRONLY));
  (void)!::write(open.number(), text, std::string_view(text).size());
}

/// Root in a container may not (capabilities(7), CAP_SYS_RESOURCE).
bool mayRaiseLimits() {
  constexpr unsigned long resources = 24;
  return ::prctl(PR_CAPBSET_READ, resources) == 1;
}

/// Sets everything that a user could have a privileged program inherit.
void inheritMuch() {
  write("/proc/self/oom_score_adj", "700");
  const gid_t groups[] = {4, 1234};
  ::setgroups(2, groups);
  cpu_set_t first;
  CPU_ZERO(&first);
  CPU_SET(0, &first);
  ::sched_setaffinity(0, sizeof first, &first);
  const sched_param usual{};
  ::sched_setscheduler(0, SCHED_BATCH, &usual);
  ::syscall(SYS_ioprio_set, 1, 0, 3 << 13);  // idle
  ::setpriority(PRIO_PROCESS, 0, 15);
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  ::umask(077);
  (void)!::chdir("/tmp");
  ::signal(SIGPIPE, SIG_IGN);
  ::signal(SIGHUP, SIG_IGN);
  sigset_t blocked;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  sigaddset(&blocked, SIGALRM);
  ::sigprocmask(SIG_BLOCK, &blocked, nullptr);
  ::raise(SIGTERM);
  const itimerval soon{.it_interval = {}, .it_value = {.tv_sec = 0, .tv_usec = 1}};
  ::setitimer(ITIMER_REAL, &soon, nullptr);
  ::dup2(STDOUT_FILENO, 200);
  ::dup2(STDOUT_FILENO, 8);
  ::close(STDIN_FILENO);
  const bool canRaise = mayRaiseLimits();
  for (const auto limit : {RLIMIT_FSIZE, RLIMIT_CPU, RLIMIT_NOFILE}) {
    rlimit little{};
    ::getrlimit(limit, &little);
    little.rlim_cur = 200;
    if (canRaise) little.rlim_max = 201;
    ::setrlimit(limit, &little);
  }
}

TEST(CleanStateTest, AChildOfRootsProcessSeesNothingOfWhatWasInherited) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can free itself of all that";
  const std::string script = R"sh(
for limit in f t n c s; do echo "$limit $(ulimit -S$limit)"; done
echo "nice $(nice)"
echo "umask $(umask)"
echo "folder $(pwd -P)"
echo "groups $(id -G)"
echo "oom $(cat /proc/self/oom_score_adj)"
grep -E '^(SigPnd|ShdPnd|SigBlk|SigIgn)' /proc/self/status | tr -s '\t' ' '
for file in 0 8 200; do test -e /proc/$$/fd/$file && echo "open $file"; done
read -r line < /proc/$$/stat
set -- $line
test "$6" = $$ && echo "own session"
echo "scheduler ${41}"
)sh";
  const std::string hardLimits = "for limit in f t n; do echo \"$limit $(ulimit -H$limit)\"; done";
  const std::string expected =
      "f unlimited\nt unlimited\nn 1024\nc 0\ns 8192\nnice 0\numask 0022\nfolder /\ngroups 0\noom 0\n"
      "SigPnd: 0000000000000000\nShdPnd: 0000000000000000\nSigBlk: 0000000000000000\nSigIgn: 0000000000000000\n"
      "open 0\nown session\nscheduler 0\n";
  const auto spoilAndReset = [] {
    inheritMuch();
    resetProcessState(ControlGroup::Keep);
  };
  EXPECT_EQ(printedAfter(spoilAndReset, script), expected);
  if (mayRaiseLimits()) {
    EXPECT_EQ(printedAfter(spoilAndReset, hardLimits), "f unlimited\nt unlimited\nn 524288\n");
  }
}

TEST(CleanStateTest, AUserGetsWhatTheHardLimitsAllow) {
  const std::string printed = printedAfter(
      [] {
        const rlimit files{.rlim_cur = 8, .rlim_max = 64}, size{.rlim_cur = 4096, .rlim_max = RLIM_INFINITY};
        ::setrlimit(RLIMIT_NOFILE, &files);
        ::setrlimit(RLIMIT_FSIZE, &size);
        if (::geteuid() == 0) (void)!::setuid(65534);
        resetProcessState(ControlGroup::Leave);
      },
      "ulimit -Sn; ulimit -Sf");
  EXPECT_EQ(printed, "64\nunlimited\n");
}

TEST(CleanStateTest, AUserKeepsWhatTheMachineGrants) {
  const auto spoil = [](bool isReset) {
    return [isReset] {
      const auto set = [](auto limit, const rlimit& value) {
        if (::setrlimit(limit, &value) != 0) (void)!::write(STDOUT_FILENO, "refused\n", 8);
      };
      const rlimit granted{.rlim_cur = 50, .rlim_max = 60}, much{.rlim_cur = 1U << 24U, .rlim_max = 1U << 25U};
      for (const auto limit : {RLIMIT_RTPRIO, RLIMIT_NICE}) set(limit, granted);
      for (const auto limit : {RLIMIT_MEMLOCK, RLIMIT_MSGQUEUE}) set(limit, much);
      rlimit files{};
      ::getrlimit(RLIMIT_NOFILE, &files);
      files.rlim_cur = std::min<rlim_t>(2000, files.rlim_max);
      set(RLIMIT_NOFILE, files);
      if (::geteuid() == 0) (void)!::setuid(65534);
      if (isReset) resetProcessState(ControlGroup::Leave);
    };
  };
  const std::string granted = "for limit in n r e l q; do ulimit -S$limit; done; ulimit -Ha";
  const std::string kept = printedAfter(spoil(false), granted);
  EXPECT_EQ(printedAfter(spoil(true), granted), kept);
  if (kept.starts_with("refused")) GTEST_SKIP() << "not all of it could be tried without the right to raise limits";
}

TEST(CleanStateTest, RootLeavesTheControlGroupOfItsUser) {
  const fs::path hierarchy =
      ::access("/sys/fs/cgroup/cgroup.procs", W_OK) == 0 ? "/sys/fs/cgroup" : "/sys/fs/cgroup/unified";
  const fs::path group = hierarchy / ("mirvel-test-" + std::to_string(::getpid()));
  if (::geteuid() != 0 || ::mkdir(group.c_str(), 0755) != 0) GTEST_SKIP() << "no control group can be made here";
  const auto enter = [&] { write((group / "cgroup.procs").c_str(), "0"); };
  const std::string show = "grep ^0:: /proc/self/cgroup";
  EXPECT_EQ(printedAfter(enter, show), "0::/" + group.filename().string() + "\n");
  EXPECT_EQ(printedAfter(
                [&] {
                  enter();
                  resetProcessState(ControlGroup::Leave);
                },
                show),
            "0::/mirvel\n");
  EXPECT_EQ(::rmdir(group.c_str()), 0);
  ::rmdir((hierarchy / "mirvel").c_str());
}

TEST(CleanStateTest, OnlyAPathOfTheSystemIsLeftOfTheEnvironment) {
  EXPECT_EQ(printedAfter(
                [] {
                  ::setenv("LD_PRELOAD", "", 1);
                  ::setenv("TZ", "/tmp/zone", 1);
                  ::setenv("PATH", "/tmp", 1);
                  resetEnvironment();
                },
                "/usr/bin/env | grep -vE '^(PWD|_|SHLVL|OLDPWD)='"),
            "PATH=/usr/bin:/bin:/usr/sbin:/sbin\n");
}

/// Whether another process of the same user can read or trace a child that has called the function.
bool canBeRead(const std::function<void()>& before) {
  Pipe ready = Pipe::make(), end = Pipe::make();
  const pid_t child = ::fork();
  if (child == 0) {
    if (::geteuid() == 0) (void)!::setuid(65534);
    ::prctl(PR_SET_DUMPABLE, 1);
    before();
    (void)!::write(ready.write.number(), "", 1);
    end.write.reset();
    char byte = 0;
    (void)readUninterrupted(end.read.number(), &byte, 1);
    ::_exit(0);
  }
  char byte = 0;
  (void)readUninterrupted(ready.read.number(), &byte, 1);
  const pid_t spy = ::fork();
  if (spy == 0) {
    if (::geteuid() == 0) (void)!::setuid(65534);
    const fs::path process = "/proc/" + std::to_string(child);
    std::error_code failure;
    (void)fs::read_symlink(process / "fd/0", failure);
    const bool reads = !failure || FileDescriptor(::open((process / "environ").c_str(), O_RDONLY)) ||
                       FileDescriptor(::open((process / "mem").c_str(), O_RDONLY)) ||
                       ::ptrace(PTRACE_ATTACH, child, 0, 0) == 0;
    ::_exit(reads ? 1 : 0);
  }
  int status = 0;
  ::waitpid(spy, &status, 0);
  end.write.reset();
  ::waitpid(child, nullptr, 0);
  return WEXITSTATUS(status) != 0;
}

TEST(CleanStateTest, AnotherProcessOfTheUserCannotLookIn) {
  EXPECT_TRUE(canBeRead([] {}));  // a control: otherwise the next line would prove nothing
  EXPECT_FALSE(canBeRead(forbidTracing));
}

#endif

}  // namespace
}  // namespace mirvel
