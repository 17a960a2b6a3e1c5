#include "helpers/privileged/ActingAs.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace mirvel {

namespace {

std::vector<gid_t> currentGroups() {
  const int count = ::getgroups(0, nullptr);
  std::vector<gid_t> groups(count > 0 ? static_cast<std::size_t>(count) : 0);
  if (!groups.empty() && ::getgroups(count, groups.data()) != count) groups.clear();
  return groups;
}

bool take(uid_t user) {
  const passwd* entry = ::getpwuid(user);
  if (!entry) return false;
  const gid_t group = entry->pw_gid;
  return ::setgroups(1, &group) == 0 && ::setegid(group) == 0 && ::seteuid(user) == 0;
}

}  // namespace

ActingAs::ActingAs(uid_t user)
    : m_groups(currentGroups()), m_group(::getegid()), m_user(::geteuid()), m_isActing(user == m_user || take(user)) {}

ActingAs::~ActingAs() {
  const bool isBack = ::seteuid(m_user) == 0 && ::setegid(m_group) == 0 &&
                      (m_user != 0 || ::setgroups(m_groups.size(), m_groups.data()) == 0);
  if (!isBack) std::abort();
}

}  // namespace mirvel
