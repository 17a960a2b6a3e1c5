#include "core/process/ProcessStatus.h"

#ifdef __APPLE__
#include <sys/sysctl.h>
#endif

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <system_error>

#include "core/text/Digits.h"

namespace mirvel {

#ifdef __APPLE__

namespace {

std::vector<ProcessStatus> query(int what, int about) {
  int name[] = {CTL_KERN, KERN_PROC, what, about};
  std::size_t size = 0;
  if (::sysctl(name, 4, nullptr, &size, nullptr, 0) != 0) return {};
  std::vector<kinfo_proc> found(size / sizeof(kinfo_proc) + 16);  // room for processes that start meanwhile
  size = found.size() * sizeof(kinfo_proc);
  if (::sysctl(name, 4, found.data(), &size, nullptr, 0) != 0) return {};
  found.resize(size / sizeof(kinfo_proc));
  std::vector<ProcessStatus> result;
  for (const kinfo_proc& process : found) {
    const timeval begin = process.kp_proc.p_starttime;
    result.push_back({.id = process.kp_proc.p_pid,
                      .group = process.kp_eproc.e_pgid,
                      .start = std::int64_t{begin.tv_sec} * 1'000'000 + begin.tv_usec,
                      .hasEnded = process.kp_proc.p_stat == SZOMB});
  }
  return result;
}

}  // namespace

std::optional<ProcessStatus> ProcessStatus::of(pid_t id) {
  const auto found = query(KERN_PROC_PID, id);
  return found.empty() ? std::nullopt : std::optional(found.front());
}

std::vector<ProcessStatus> ProcessStatus::all() {
  return query(KERN_PROC_ALL, 0);
}

#else

/// See proc_pid_stat(5). The program's name is in parentheses and may contain spaces and parentheses itself.
std::optional<ProcessStatus> ProcessStatus::of(pid_t id) {
  std::ifstream file("/proc/" + std::to_string(id) + "/stat", std::ios::binary);
  std::string text;
  std::getline(file, text, '\0');  // to the end; empty if the process ends meanwhile, where an iterator would throw
  const auto nameEnd = text.rfind(") ");
  if (nameEnd == std::string::npos) return std::nullopt;
  std::istringstream fields(text.substr(nameEnd + 2));
  ProcessStatus process{.id = id};
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

std::vector<ProcessStatus> ProcessStatus::all() {
  std::vector<ProcessStatus> result;
  std::error_code failure;
  for (std::filesystem::directory_iterator entry("/proc", failure), end; !failure && entry != end;
       entry.increment(failure)) {
    const auto id = Decimal::toInt(entry->path().filename().native());
    if (!id) continue;
    if (const auto process = of(static_cast<pid_t>(*id))) result.push_back(*process);
  }
  return result;
}

#endif

ProcessIdentity ProcessIdentity::ofThisProcess() {
  return of(::getpid()).value_or(ProcessIdentity{.id = ::getpid()});
}

std::optional<ProcessIdentity> ProcessIdentity::of(pid_t id) {
  const auto status = ProcessStatus::of(id);
  return status ? std::optional(ProcessIdentity{id, status->start}) : std::nullopt;
}

std::string ProcessIdentity::text() const {
  return std::to_string(id) + ':' + std::to_string(start);
}

std::optional<ProcessIdentity> ProcessIdentity::from(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  const auto id = Decimal::toInt(text.substr(0, colon)), start = Decimal::toInt(text.substr(colon + 1));
  if (!id || !start || *id <= 0 || *id > std::numeric_limits<pid_t>::max()) return std::nullopt;
  return ProcessIdentity{static_cast<pid_t>(*id), *start};
}

}  // namespace mirvel
