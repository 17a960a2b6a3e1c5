#include "helpers/host/ProcessPlan.h"

#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <utility>

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

std::vector<ProcessPlan::Limit> limitsOf(const jobfile::Plist& plist) {
  const Limits none;
  const Limits& soft = plist.softResourceLimits ? *plist.softResourceLimits : none;
  const Limits& hard = plist.hardResourceLimits ? *plist.hardResourceLimits : none;
  std::vector<ProcessPlan::Limit> result;
  for (const LimitRow& row : limitRows) {
    if (soft.*row.field || hard.*row.field) result.push_back({row.resource, soft.*row.field, hard.*row.field});
  }
  return result;
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
  Environment result{{"PATH", "/usr/bin:/bin:/usr/sbin:/sbin"}};
  for (const char* const name : names) {
    const auto found = ofHost.find(name);
    if (found != ofHost.end()) result.insert(*found);
  }
  return result;
}

}  // namespace mirvel::host
