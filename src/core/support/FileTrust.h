#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>

#include "core/support/PrivateGroup.h"
#include "core/support/Result.h"

namespace mirvel {

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
