#pragma once

#include <sys/types.h>
#ifdef __linux__
#include <pwd.h>
#endif

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace mirvel {

/// Who has a group, by the user database.
struct GroupUsers {
  struct User {
    std::string name;
    uid_t id = 0;
  };

  std::string name;
  std::vector<User> primary;         ///< those whose primary group it is
  std::vector<std::string> members;  ///< the names that it lists

  /// Whether it is the group that some systems make with each user: the user's primary one, of the same name, and
  /// nobody else is in it.
  bool isPrivateTo(uid_t user) const;
};

#ifdef __linux__
/// The users with that primary group, in a list that `next` walks through as getpwent_r(3) does: null and an error of 0
/// or ENOENT are its end. None if it fails before.
std::optional<std::vector<GroupUsers::User>> usersWithPrimary(gid_t group, const std::function<int(passwd*&)>& next);
#endif

/// Whether the group is private to the user; not if that can't be told. Linux only: elsewhere no group is. From any
/// thread.
bool isPrivateGroup(gid_t group, uid_t user);
/// The user's private group; none if there is no such group.
std::optional<gid_t> privateGroupOf(uid_t user);

}  // namespace mirvel
