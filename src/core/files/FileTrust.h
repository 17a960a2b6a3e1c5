#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>

#include "core/base/Result.h"

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

/// Whether a group is private to a user; see `isPrivateGroup`.
using PrivateGroups = std::function<bool(gid_t group, uid_t user)>;

/// Refuses a file that somebody else than root and the user could have written, as launchd does with job files: its
/// content decides what is run with the user's rights. `descriptor` is the open file, so that what is judged is what is
/// read, whatever happens to its name meanwhile.
///
/// - File and folder must belong to root or the user, and neither the group nor others may write to them: whoever may
///   write to the folder can put another file in place of this one.
/// - Of a symbolic link, the same holds for its own folder and owner, and those of all links on the way.
/// - In a folder with the sticky bit, such as /tmp, nobody can replace the files of others.
/// - Where each user has a private group (Linux, with a umask of 002), its right to write counts as the user's own:
///   the user's primary group, of the same name, that nobody else has or is a member of. launchd would refuse that.
///   A file with an access list (acl(5)) is refused if any of those that it names may write.
///
/// The error is `NotTrusted` with the path at fault, and says what to do about it.
Result<void> checkTrust(const std::filesystem::path& file, int descriptor, uid_t user,
                        const PrivateGroups& isPrivate = isPrivateGroup);

/// The same of a file that isn't open; other errors if it can't be opened.
Result<void> checkTrust(const std::filesystem::path& file, uid_t user, const PrivateGroups& isPrivate = isPrivateGroup);

}  // namespace mirvel
