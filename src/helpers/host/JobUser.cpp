#include "helpers/host/JobUser.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <cerrno>

namespace mirvel::host {

namespace {

constexpr std::size_t entrySize = std::size_t{1} << 16U;

Error unknown(const std::string& what, const std::string& name) {
  return {.code = Error::Code::NotFound, .message = "there is no " + what + " " + name};
}

Result<gid_t> groupNumber(const std::string& name) {
  std::vector<char> buffer(entrySize);
  group entry{};
  group* found = nullptr;
  ::getgrnam_r(name.c_str(), &entry, buffer.data(), buffer.size(), &found);
  if (!found) return unknown("group", name);
  return found->gr_gid;
}

std::vector<gid_t> allGroups(const std::string& user, gid_t group) {
#ifdef __APPLE__
  using Number = int;
#else
  using Number = gid_t;
#endif
  int count = 256;
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
  if (!found) return unknown("user", name);
  result.user = found->pw_uid;
  result.group = found->pw_gid;
  result.environment = {{"HOME", found->pw_dir}, {"USER", name}, {"LOGNAME", name}, {"SHELL", found->pw_shell}};
  return {};
}

}  // namespace

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

int JobUser::assume() const {
  if (group && ::setgroups(groups.size(), groups.data()) != 0) return errno;
  if (group && ::setgid(*group) != 0) return errno;
  if (user && ::setuid(*user) != 0) return errno;
  return 0;
}

}  // namespace mirvel::host
