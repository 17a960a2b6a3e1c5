#include "helpers/host/RunProcesses.h"

#include <signal.h>
#include <unistd.h>
#ifdef __APPLE__
#include <sys/sysctl.h>
#endif

#include <optional>

#include "core/files/ReadFile.h"
#include "helpers/process/ProcessStatus.h"

namespace mirvel::host {

namespace {

/// Always false where the system shows no environments.
bool isMarked(pid_t id, const std::string& mark) {
#ifdef __APPLE__
  (void)id, (void)mark;
  return false;
#else
  constexpr std::size_t largest = std::size_t{8} << 20U;
  const auto environment = readFile("/proc/" + std::to_string(id) + "/environ", largest);
  if (!environment || mark.empty()) return false;  // that of another user, for example
  const std::string entry = std::string(1, '\0') + markVariable + '=' + mark + '\0';
  return (std::string(1, '\0') + *environment).find(entry) != std::string::npos;
#endif
}

/// Whether group and session of that number can be the run's. The number isn't given away as long as there is a process
/// in the group, so that without a process of that number the group is the one that was left.
bool isNumberOurs(const JobRun& run) {
  if (run.leader <= 0) return false;
  const auto leader = ProcessStatus::of(run.leader);
  return !leader || leader->start == run.start;
}

}  // namespace

std::vector<pid_t> processesOf(const JobRun& run, Reach reach) {
  const bool isNumbered = isNumberOurs(run);
  const auto belongs = [&](const ProcessStatus& process) {
    const bool isHost = process.id == ::getpid();  // which a job may have started
    if (isHost || process.hasEnded || process.start < run.start) return false;
    if (isNumbered && process.id == run.leader) return true;
    if (run.isLeaderAlone) return false;
    if (isNumbered && process.group == run.leader) return true;
    if (reach == Reach::Group) return false;
    return (isNumbered && process.session == run.leader) || isMarked(process.id, run.mark);
  };
  std::vector<pid_t> result;
  for (const ProcessStatus& process : ProcessStatus::all()) {
    if (belongs(process)) result.push_back(process.id);
  }
  return result;
}

void signalRun(const JobRun& run, Reach reach, int signal) {
  // At once, as long as the number is held by the first process: none of the group slips through by forking.
  const auto leader = run.leader > 0 ? ProcessStatus::of(run.leader) : std::nullopt;
  const bool isHeld = leader && leader->start == run.start;
  // A process that has only just been forked leads no group yet, and is told by itself.
  const bool isReached = isHeld && ::kill(run.isLeaderAlone ? run.leader : -run.leader, signal) == 0;
  for (const pid_t process : processesOf(run, reach)) {
    const bool isDone = isReached && (process == run.leader || ::getpgid(process) == run.leader);
    if (!isDone) ::kill(process, signal);
  }
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
  const auto first = ProcessStatus::of(1);
  return boot->substr(0, boot->find('\n')) + '/' + std::to_string(first ? first->start : 0);
#endif
}

}  // namespace mirvel::host
