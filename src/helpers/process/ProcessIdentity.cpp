#include "helpers/process/ProcessIdentity.h"

#include <unistd.h>
#ifdef __APPLE__
#include <sys/sysctl.h>
#endif

#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>

#include "core/support/Decimal.h"

namespace mirvel {

namespace {

#ifdef __APPLE__
std::optional<std::int64_t> startOf(pid_t id) {
  int name[] = {CTL_KERN, KERN_PROC, KERN_PROC_PID, id};
  kinfo_proc found{};
  std::size_t size = sizeof found;
  if (::sysctl(name, 4, &found, &size, nullptr, 0) != 0 || size == 0) return std::nullopt;
  const timeval& time = found.kp_proc.p_starttime;
  return std::int64_t{time.tv_sec} * 1'000'000 + time.tv_usec;
}
#else
/// The 22nd field of /proc/ID/stat (proc(5)). The second is the program's name in brackets and may hold anything.
std::optional<std::int64_t> startOf(pid_t id) {
  std::ifstream file("/proc/" + std::to_string(id) + "/stat");
  const std::string line{std::istreambuf_iterator<char>(file), {}};
  const std::size_t end = line.rfind(')');
  if (end == std::string::npos) return std::nullopt;
  std::istringstream fields(line.substr(end + 1));
  std::string field;
  constexpr int afterName = 20;
  for (int i = 0; i < afterName && fields >> field; ++i) {
  }
  return fields ? Decimal::toInt(field) : std::nullopt;
}
#endif

}  // namespace

ProcessIdentity ProcessIdentity::ofThisProcess() {
  return of(::getpid()).value_or(ProcessIdentity{.id = ::getpid()});
}

std::optional<ProcessIdentity> ProcessIdentity::of(pid_t id) {
  const auto start = startOf(id);
  return start ? std::optional(ProcessIdentity{id, *start}) : std::nullopt;
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
