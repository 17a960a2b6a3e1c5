#include "helpers/privileged/ActingAs.h"

#include <grp.h>
#include <unistd.h>
#ifdef __APPLE__
#include <sys/kauth.h>
#else
#include <sys/syscall.h>
#endif

#include <cstdlib>

#include "core/process/UserEntry.h"

namespace mirvel {

namespace {

std::vector<gid_t> currentGroups() {
  const int count = ::getgroups(0, nullptr);
  std::vector<gid_t> groups(count > 0 ? static_cast<std::size_t>(count) : 0);
  if (!groups.empty() && ::getgroups(count, groups.data()) != count) groups.clear();
  return groups;
}

#ifdef __APPLE__

// Deprecated without a replacement: no other function changes the rights of a single thread on macOS.
#pragma clang diagnostic ignored "-Wdeprecated-declarations"

/// The system looks up the user's groups itself.
bool takeRights(uid_t user, gid_t group) {
  return ::pthread_setugid_np(user, group) == 0;
}

bool giveBackRights(uid_t, gid_t, const std::vector<gid_t>&) {
  return ::pthread_setugid_np(KAUTH_UID_NONE, KAUTH_GID_NONE) == 0;
}

#else

// System calls, because the functions of the C library change the rights of all threads (nptl(7)).
#ifdef SYS_setresuid32
constexpr long setUser = SYS_setresuid32, setGroup = SYS_setresgid32, setGroups = SYS_setgroups32;
#else
constexpr long setUser = SYS_setresuid, setGroup = SYS_setresgid, setGroups = SYS_setgroups;
#endif
constexpr long unchanged = -1;

bool takeUser(uid_t user) {
  return ::syscall(setUser, unchanged, static_cast<long>(user), unchanged) == 0;
}

bool takeGroup(gid_t group) {
  return ::syscall(setGroup, unchanged, static_cast<long>(group), unchanged) == 0;
}

bool takeGroups(const gid_t* groups, std::size_t count) {
  return ::syscall(setGroups, count, groups) == 0;
}

/// The user last: without root's rights, the groups can't be changed any more.
bool takeRights(uid_t user, gid_t group) {
  return takeGroups(&group, 1) && takeGroup(group) && takeUser(user);
}

bool giveBackRights(uid_t user, gid_t group, const std::vector<gid_t>& groups) {
  return takeUser(user) && takeGroup(group) && (user != 0 || takeGroups(groups.data(), groups.size()));
}

#endif

bool take(uid_t user) {
  const auto entry = userEntry(user);
  return entry && takeRights(user, entry->group);
}

}  // namespace

ActingAs::ActingAs(uid_t user)
    : m_groups(currentGroups()),
      m_group(::getegid()),
      m_user(::geteuid()),
      m_isOther(user != m_user),
      m_isActing(!m_isOther || take(user)) {}

ActingAs::~ActingAs() {
  if (m_isOther && !giveBackRights(m_user, m_group, m_groups)) std::abort();
}

}  // namespace mirvel
