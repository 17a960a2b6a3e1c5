#include "helpers/process/CleanState.h"

#include <fcntl.h>
#include <grp.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>
#ifdef __linux__
#include <sched.h>
#include <sys/personality.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#endif

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <string_view>

#include "core/process/Environment.h"
#include "core/process/FileDescriptor.h"

namespace mirvel {

namespace {

struct ResourceLimit {
#ifdef __GLIBC__
  __rlimit_resource resource;
#else
  int resource;
#endif
  rlim_t soft, hard;
};

constexpr rlim_t none = RLIM_INFINITY;

/// The limits with which Linux and systemd start services. No core dumps: they would contain secrets.
constexpr std::array limits{
    ResourceLimit{RLIMIT_CPU, none, none},
    ResourceLimit{RLIMIT_FSIZE, none, none},
    ResourceLimit{RLIMIT_DATA, none, none},
    ResourceLimit{RLIMIT_STACK, rlim_t{8} << 20U, none},
    ResourceLimit{RLIMIT_CORE, 0, none},
    ResourceLimit{RLIMIT_AS, none, none},
    ResourceLimit{RLIMIT_NOFILE, 1024, 524288},
    ResourceLimit{RLIMIT_MEMLOCK, rlim_t{8} << 20U, rlim_t{8} << 20U},
    ResourceLimit{RLIMIT_NPROC, none, none},
#ifdef __linux__
    ResourceLimit{RLIMIT_RSS, none, none},
    ResourceLimit{RLIMIT_LOCKS, none, none},
    ResourceLimit{RLIMIT_SIGPENDING, none, none},
    ResourceLimit{RLIMIT_MSGQUEUE, 819200, 819200},
    ResourceLimit{RLIMIT_NICE, 0, 0},
    ResourceLimit{RLIMIT_RTPRIO, 0, 0},
    ResourceLimit{RLIMIT_RTTIME, none, none},
#endif
};

/// Only root can raise a hard limit. For other users, soft limits are raised as far as the hard ones permit, and
/// nothing is lowered, because a lowered hard limit couldn't be raised again.
void resetLimits() {
  const bool isRoot = ::geteuid() == 0;
  for (const ResourceLimit& limit : limits) {
    const rlimit wanted{.rlim_cur = limit.soft, .rlim_max = limit.hard};
    if (isRoot && ::setrlimit(limit.resource, &wanted) == 0) continue;
    rlimit now{};
    if (::getrlimit(limit.resource, &now) != 0) continue;
    now.rlim_cur = std::min(isRoot ? limit.soft : std::max(limit.soft, now.rlim_cur), now.rlim_max);
    ::setrlimit(limit.resource, &now);
  }
}

#ifdef __linux__
/// Writes a short text to a file of the kernel, as far as it permits.
void writeTo(const std::filesystem::path& file, std::string_view text) {
  const FileDescriptor open(::open(file.c_str(), O_WRONLY | O_CLOEXEC));
  (void)!::write(open.number(), text.data(), text.size());
}
#endif

void resetPriority() {
#ifdef __linux__
  const sched_param usual{};
  ::sched_setscheduler(0, SCHED_OTHER, &usual);
  cpu_set_t all;
  std::fill_n(reinterpret_cast<unsigned char*>(&all), sizeof all, static_cast<unsigned char>(0xFF));
  ::sched_setaffinity(0, sizeof all, &all);
  constexpr long thisProcess = 1, byNiceValue = 0;  // ioprio_set(2), which has no header
  ::syscall(SYS_ioprio_set, thisProcess, 0, byNiceValue);
  writeTo("/proc/self/oom_score_adj", "0");
  ::prctl(PR_SET_TIMERSLACK, 50000UL);
  ::personality(PER_LINUX);
#endif
  ::setpriority(PRIO_PROCESS, 0, 0);
}

#ifdef __linux__
/// Two signals are reserved for the C library, whose functions refuse them. It sets their handlers with the first
/// thread; until then their dispositions are the inherited ones. See rt_sigaction(2): the kernel's structure begins
/// with the handler, and zeros are the default on all architectures.
void resetReservedSignals() {
  struct {
    void (*handler)(int) = nullptr;
    std::array<std::uint64_t, 4> rest{};
  } before, byDefault;
  constexpr std::size_t maskSize = 8;
  for (const int number : {32, 33}) {
    const bool isKnown = ::syscall(SYS_rt_sigaction, number, nullptr, &before, maskSize) == 0;
    if (isKnown && before.handler == SIG_IGN) ::syscall(SYS_rt_sigaction, number, &byDefault, nullptr, maskSize);
  }
}
#endif

/// Ignoring a signal first discards a pending one, which would be delivered when the mask is cleared.
void resetSignals() {
  for (int number = 1; number < NSIG; ++number) ::signal(number, SIG_IGN);
  sigset_t nothing;
  sigemptyset(&nothing);
  ::sigprocmask(SIG_SETMASK, &nothing, nullptr);
  for (int number = 1; number < NSIG; ++number) ::signal(number, SIG_DFL);
#ifdef __linux__
  resetReservedSignals();
  ::prctl(PR_SET_PDEATHSIG, 0);
#endif
}

void stopTimers() {
  const itimerval off{};
  ::setitimer(ITIMER_REAL, &off, nullptr);
  ::setitimer(ITIMER_VIRTUAL, &off, nullptr);
  ::setitimer(ITIMER_PROF, &off, nullptr);
}

/// Includes descriptors above the limit, which may have been lowered after they were opened.
void closeDescriptors() {
  constexpr int first = STDERR_FILENO + 1;
#ifdef SYS_close_range
  if (::syscall(SYS_close_range, first, ~0U, 0) == 0) return;
#endif
  constexpr int most = 65536;
  for (int number = first; number < most; ++number) ::close(number);
}

/// Otherwise a file that is opened later would get the number of a missing one, and messages would be written to it.
void fillStandardDescriptors() {
  for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number) {
    if (::fcntl(number, F_GETFD) < 0)
      (void)::open("/dev/null", O_RDWR);  // gets the lowest free number, which is this one
  }
}

/// If a call fails, the previous state remains; the effective user is root in any case.
void takeRootsGroups() {
  if (::geteuid() != 0) return;
  const gid_t group = 0;
  [[maybe_unused]] const bool isDone = ::setgroups(1, &group) == 0 && ::setgid(group) == 0 && ::setuid(0) == 0;
}

#ifdef __linux__
/// Moves this process to the program's own control group directly below the root of this hierarchy (cgroups(7), version
/// 2), so that a limit on the parent's group doesn't affect it. Without effect unless this process is root's and may
/// write to the hierarchy.
void leaveControlGroup(const std::filesystem::path& hierarchy) {
  if (::geteuid() != 0 || ::access((hierarchy / "cgroup.procs").c_str(), W_OK) != 0) return;
  const std::filesystem::path group = hierarchy / "mirvel";
  ::mkdir(group.c_str(), 0755);  // usually exists already
  writeTo(group / "cgroup.procs", "0");
}
#endif

}  // namespace

void resetProcessState(ControlGroup controlGroup) {
  stopTimers();
  resetSignals();
  resetLimits();
  closeDescriptors();
  fillStandardDescriptors();
  resetPriority();
  ::setsid();  // fails only for the leader of a process group
  ::umask(022);
  (void)!::chdir("/");  // if it fails, a folder stays busy, nothing more
  takeRootsGroups();
#ifdef __linux__
  if (controlGroup == ControlGroup::Leave) {
    for (const char* hierarchy : {"/sys/fs/cgroup", "/sys/fs/cgroup/unified"}) leaveControlGroup(hierarchy);
  }
#else
  (void)controlGroup;
#endif
}

void resetEnvironment() {
  for (const auto& [name, value] : processEnvironment()) ::unsetenv(name.c_str());
  ::setenv("PATH", "/usr/bin:/bin:/usr/sbin:/sbin", 1);
}

void forbidTracing() {
#ifdef __linux__
  ::prctl(PR_SET_DUMPABLE, 0);
#endif
}

}  // namespace mirvel
