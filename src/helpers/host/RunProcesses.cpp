#include "helpers/host/RunProcesses.h"

#include <signal.h>
#include <unistd.h>
#ifdef __APPLE__
#include <sys/sysctl.h>
#endif

#include <algorithm>
#include <filesystem>
#include <optional>
#include <sstream>
#include <string_view>
#include <system_error>

#include "core/support/Decimal.h"
#include "core/support/ReadFile.h"

namespace mirvel::host {

namespace {

/// What the system tells of a process that hasn't ended.
struct Process {
  pid_t id = 0;
  pid_t group = 0;
  pid_t session = 0;
  std::uint64_t start = 0;
  bool hasEnded = false;  ///< and isn't collected yet
};

#ifdef __APPLE__

std::vector<Process> ask(int what, int about) {
  int name[] = {CTL_KERN, KERN_PROC, what, about};
  std::size_t size = 0;
  if (::sysctl(name, 4, nullptr, &size, nullptr, 0) != 0) return {};
  std::vector<kinfo_proc> found(size / sizeof(kinfo_proc) + 16);
  size = found.size() * sizeof(kinfo_proc);
  if (::sysctl(name, 4, found.data(), &size, nullptr, 0) != 0) return {};
  found.resize(size / sizeof(kinfo_proc));
  std::vector<Process> result;
  for (const kinfo_proc& process : found) {
    const timeval begin = process.kp_proc.p_starttime;
    result.push_back(
        {.id = process.kp_proc.p_pid,
         .group = process.kp_eproc.e_pgid,
         .start = static_cast<std::uint64_t>(begin.tv_sec) * 1000000U + static_cast<unsigned>(begin.tv_usec),
         .hasEnded = process.kp_proc.p_stat == SZOMB});
  }
  return result;
}

std::optional<Process> find(pid_t id) {
  const auto found = ask(KERN_PROC_PID, id);
  return found.empty() ? std::nullopt : std::optional(found.front());
}

std::vector<Process> candidates(const JobRun& run) {
  return run.leader > 0 ? ask(KERN_PROC_PGRP, run.leader) : std::vector<Process>();
}

bool isMarked(pid_t, const std::string&) {
  return false;
}

#else

std::string pathOf(pid_t id, const char* name) {
  return "/proc/" + std::to_string(id) + '/' + name;
}

/// See proc_pid_stat(5). The name of the program, in parentheses, may hold anything.
std::optional<Process> find(pid_t id) {
  constexpr std::size_t largest = 4096;
  const auto text = readFile(pathOf(id, "stat"), largest);
  const auto nameEnd = text ? text->rfind(") ") : std::string::npos;
  if (nameEnd == std::string::npos) return std::nullopt;
  std::istringstream fields(text->substr(nameEnd + 2));
  Process process{.id = id};
  char state = 0;
  pid_t parent = 0;
  fields >> state >> parent >> process.group >> process.session;
  constexpr int betweenSessionAndStart = 15;
  std::string other;
  for (int i = 0; i < betweenSessionAndStart; ++i) fields >> other;
  if (!(fields >> process.start)) return std::nullopt;
  process.hasEnded = state == 'Z' || state == 'X';
  return process;
}

std::vector<Process> candidates(const JobRun&) {
  std::vector<Process> result;
  std::error_code failure;
  for (std::filesystem::directory_iterator entry("/proc", failure), end; !failure && entry != end;
       entry.increment(failure)) {
    const auto id = Decimal::toInt(entry->path().filename().native());
    if (!id) continue;
    if (const auto process = find(static_cast<pid_t>(*id))) result.push_back(*process);
  }
  return result;
}

bool isMarked(pid_t id, const std::string& mark) {
  constexpr std::size_t largest = std::size_t{8} << 20U;
  const auto environment = readFile(pathOf(id, "environ"), largest);
  if (!environment || mark.empty()) return false;  // that of another user, for example
  const std::string entry = std::string(1, '\0') + markVariable + '=' + mark + '\0';
  return (std::string(1, '\0') + *environment).find(entry) != std::string::npos;
}

#endif

/// Whether group and session of that number can be the run's. The number isn't given away as long as there is a process
/// in the group, so that without a process of that number the group is the one that was left.
bool isNumberOurs(const JobRun& run) {
  if (run.leader <= 0) return false;
  const auto leader = find(run.leader);
  return !leader || leader->start == run.start;
}

}  // namespace

std::vector<pid_t> processesOf(const JobRun& run, Reach reach) {
  const bool isNumbered = isNumberOurs(run);
  const auto belongs = [&](const Process& process) {
    const bool isHost = process.id == ::getpid();  // which a job may have started
    if (isHost || process.hasEnded || process.start < run.start) return false;
    if (isNumbered && process.id == run.leader) return true;
    if (run.isLeaderAlone) return false;
    if (isNumbered && process.group == run.leader) return true;
    if (reach == Reach::Group) return false;
    return (isNumbered && process.session == run.leader) || isMarked(process.id, run.mark);
  };
  std::vector<pid_t> result;
  for (const Process& process : candidates(run)) {
    if (belongs(process)) result.push_back(process.id);
  }
  return result;
}

void signalRun(const JobRun& run, Reach reach, int signal) {
  // At once, as long as the number is held by the first process: none of the group slips through by forking.
  const bool isHeld = run.leader > 0 && startOf(run.leader) == run.start;
  // A process that has only just been forked leads no group yet, and is told by itself.
  const bool isReached = isHeld && ::kill(run.isLeaderAlone ? run.leader : -run.leader, signal) == 0;
  for (const pid_t process : processesOf(run, reach)) {
    const bool isDone = isReached && (process == run.leader || ::getpgid(process) == run.leader);
    if (!isDone) ::kill(process, signal);
  }
}

std::uint64_t startOf(pid_t process) {
  const auto found = find(process);
  return found ? found->start : 0;
}

std::string bootIdentity() {
#ifdef __APPLE__
  char text[128] = {};
  std::size_t size = sizeof text - 1;
  return ::sysctlbyname("kern.bootsessionuuid", text, &size, nullptr, 0) == 0 ? text : "";
#else
  constexpr std::size_t largest = 256;
  const auto boot = readFile("/proc/sys/kernel/random/boot_id", largest);
  if (!boot) return {};
  // A container begins anew with its first process, while the machine runs on.
  return boot->substr(0, boot->find('\n')) + '/' + std::to_string(startOf(1));
#endif
}

}  // namespace mirvel::host
