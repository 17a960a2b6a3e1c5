#include "helpers/host/ProcessPlan.h"

#include <grp.h>
#include <pwd.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace mirvel::host {

namespace {

using Limits = jobfile::ResourceLimits;

struct LimitRow {
  std::optional<std::int64_t> Limits::*field;
  int resource;
};

constexpr std::array<LimitRow, 9> limitRows = {{
    {&Limits::core, RLIMIT_CORE},
    {&Limits::cpu, RLIMIT_CPU},
    {&Limits::data, RLIMIT_DATA},
    {&Limits::fileSize, RLIMIT_FSIZE},
    {&Limits::memoryLock, RLIMIT_MEMLOCK},
    {&Limits::numberOfFiles, RLIMIT_NOFILE},
    {&Limits::numberOfProcesses, RLIMIT_NPROC},
    {&Limits::residentSetSize, RLIMIT_RSS},
    {&Limits::stack, RLIMIT_STACK},
}};

std::vector<ProcessPlan::ResourceLimit> limitsOf(const jobfile::Plist& plist) {
  const Limits none;
  const Limits& soft = plist.softResourceLimits ? *plist.softResourceLimits : none;
  const Limits& hard = plist.hardResourceLimits ? *plist.hardResourceLimits : none;
  std::vector<ProcessPlan::ResourceLimit> result;
  for (const LimitRow& row : limitRows) {
    if (soft.*row.field || hard.*row.field) result.push_back({row.resource, soft.*row.field, hard.*row.field});
  }
  return result;
}

// Enough for any entry; sysconf(_SC_GETPW_R_SIZE_MAX) is only a suggestion, and -1 on some systems.
constexpr std::size_t entrySize = std::size_t{1} << 16U;

Error unknownName(const char* what, const std::string& name, jobfile::Plist::CodingKeys key) {
  return {.code = Error::Code::NotFound,
          .message = std::string("there is no ") + what + " " + name,
          .keyPath = std::string(jobfile::Plist::text(key))};
}

Result<gid_t> groupNumber(const std::string& name) {
  std::vector<char> buffer(entrySize);
  group entry{};
  group* found = nullptr;
  ::getgrnam_r(name.c_str(), &entry, buffer.data(), buffer.size(), &found);
  if (!found) return unknownName("group", name, jobfile::Plist::CodingKeys::GroupName);
  return found->gr_gid;
}

std::vector<gid_t> allGroups(const std::string& user, gid_t group) {
#ifdef __APPLE__
  using Number = int;  // so declared in its getgrouplist(3)
#else
  using Number = gid_t;
#endif
  int count = 256;  // enough for most; otherwise the call fails and sets `count` to the size needed
  std::vector<Number> numbers(static_cast<std::size_t>(count));
  if (::getgrouplist(user.c_str(), static_cast<Number>(group), numbers.data(), &count) < 0 && count > 256) {
    numbers.resize(static_cast<std::size_t>(count));
    ::getgrouplist(user.c_str(), static_cast<Number>(group), numbers.data(), &count);
  }
  return {numbers.begin(), numbers.begin() + std::min<std::ptrdiff_t>(count, std::ssize(numbers))};
}

Result<void> fillUser(const std::string& name, JobUser& result) {
  std::vector<char> buffer(entrySize);
  passwd entry{};
  passwd* found = nullptr;
  ::getpwnam_r(name.c_str(), &entry, buffer.data(), buffer.size(), &found);
  if (!found) return unknownName("user", name, jobfile::Plist::CodingKeys::UserName);
  result.user = found->pw_uid;
  result.group = found->pw_gid;
  result.environment = {{"HOME", found->pw_dir}, {"USER", name}, {"LOGNAME", name}, {"SHELL", found->pw_shell}};
  return {};
}

}  // namespace

ProcessPlan ProcessPlan::of(const jobfile::Plist& plist) {
  ProcessPlan plan;
  plan.arguments = plist.programArguments.value_or(std::vector<std::string>());
  plan.program = plist.program.value_or(plan.arguments.empty() ? "" : plan.arguments.front());
  if (plan.arguments.empty()) plan.arguments = {plan.program};
  if (plist.environmentVariables) {
    plan.environment.insert(plist.environmentVariables->begin(), plist.environmentVariables->end());
  }
  plan.workingDirectory = plist.workingDirectory;
  plan.rootDirectory = plist.rootDirectory;
  plan.standardIn = plist.standardInPath;
  plan.standardOut = plist.standardOutPath;
  plan.standardError = plist.standardErrorPath;
  if (plist.umask && plist.umask->int_) plan.umask = static_cast<mode_t>(*plist.umask->int_ & 0777);
  if (plist.nice) plan.nice = static_cast<int>(std::clamp<std::int64_t>(*plist.nice, -20, 20));
  plan.limits = limitsOf(plist);
  plan.userName = plist.userName;
  plan.groupName = plist.groupName;
  plan.initGroups = plist.initGroups.value_or(true);
  return plan;
}

Environment jobEnvironment(const Environment& ofHost) {
  constexpr std::array names = {"HOME",
                                "USER",
                                "LOGNAME",
                                "SHELL",
                                "TMPDIR",
                                "LANG",
                                "XDG_RUNTIME_DIR",
                                "DBUS_SESSION_BUS_ADDRESS",
                                "DISPLAY",
                                "WAYLAND_DISPLAY",
                                "TZ",
                                "XAUTHORITY"};
  // launchd's default, whatever the session uses.
  Environment result{{"PATH", "/usr/bin:/bin:/usr/sbin:/sbin"}};
  for (const char* const name : names) {
    const auto found = ofHost.find(name);
    if (found != ofHost.end()) result.insert(*found);
  }
  return result;
}

Result<JobUser> JobUser::of(const ProcessPlan& plan) {
  JobUser result;
  if (::geteuid() != 0) return result;
  if (plan.userName) {
    const auto filled = fillUser(*plan.userName, result);
    if (!filled) return filled.error();
  }
  if (plan.groupName) {
    const auto number = groupNumber(*plan.groupName);
    if (!number) return number.error();
    result.group = *number;
  }
  if (result.group) result.groups = {*result.group};
  if (plan.userName && plan.initGroups) result.groups = allGroups(*plan.userName, *result.group);
  return result;
}

// In this order: without root's user ID, the groups can't be changed any more.
int JobUser::assume() const {
  if (group && ::setgroups(groups.size(), groups.data()) != 0) return errno;
  if (group && ::setgid(*group) != 0) return errno;
  if (user && ::setuid(*user) != 0) return errno;
  return 0;
}

}  // namespace mirvel::host
