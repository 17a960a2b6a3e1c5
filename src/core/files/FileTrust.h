#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Result.h"

#ifdef __linux__
#include <pwd.h>
#endif

namespace mirvel {

/// Who belongs to a group, according to the user database.
struct GroupUsers {
  struct User {
    std::string name;
    uid_t id = 0;
  };

  std::string name;
  std::vector<User> primary;         ///< users whose primary group it is
  std::vector<std::string> members;  ///< names of further members

  /// Whether it is the private group that many Linux systems create with each user: the user's primary group, named
  /// like the user, and without anyone else.
  bool isPrivateTo(uid_t user) const;
};

#ifdef __linux__
/// The users with this primary group in the enumeration that `next` performs like getpwent_r(3): it sets the pointer
/// and returns 0, or returns 0 or ENOENT with a null pointer at the end. nullopt if it returns another error.
std::optional<std::vector<GroupUsers::User>> usersWithPrimary(gid_t group, const std::function<int(passwd*&)>& next);
#endif

/// Whether the group is private to the user. False if it can't be determined, and always except on Linux. Users of a
/// directory server that doesn't allow enumeration aren't found. Thread-safe. Reads the whole user database.
bool isPrivateGroup(gid_t group, uid_t user);
/// The user's primary group if it is private, otherwise nullopt.
std::optional<gid_t> privateGroupOf(uid_t user);

/// A function like `isPrivateGroup`, so that tests needn't create groups.
using PrivateGroups = std::function<bool(gid_t group, uid_t user)>;

/// Checks that only root and the user could have written a file, as launchd does before it loads a job: the file
/// decides what is run with the user's rights. `descriptor` is the open file, so that the file that is checked is the
/// one that is read, even if its name is reused meanwhile; it must have been opened by the path `file`.
///
/// - File and folder must belong to root or the user, and neither the group nor others may have write permission: who
/// can
///   write to the folder can replace the file.
/// - The same holds for the folder and the owner of every symbolic link on the way.
/// - A folder with the sticky bit, such as /tmp, may be writable, because nobody can replace the files of others in it.
/// - Write permission of the user's private group counts as the user's own. This is for Linux systems with a umask of
///   002, whose files launchd would reject. It doesn't extend to files that belong to root or have an access control
///   list.
///
/// Only the last folder is checked, not its ancestors. `NotTrusted` with the path at fault and a message that says how
/// to fix it; also if the file was replaced. `NotFound`, `NotPermitted` or `Io` if something can't be examined.
Result<void> checkTrust(const std::filesystem::path& file, int descriptor, uid_t user,
                        const PrivateGroups& isPrivate = isPrivateGroup);

/// The same for a file that isn't open. Also fails with the errors of `RegularFile::open`.
Result<void> checkTrust(const std::filesystem::path& file, uid_t user, const PrivateGroups& isPrivate = isPrivateGroup);

}  // namespace mirvel
