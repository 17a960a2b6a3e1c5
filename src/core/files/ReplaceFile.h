#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string_view>

#include "core/base/Result.h"
#include "core/files/FileCalls.h"

namespace mirvel {

/// How the names of the temporary files begin. One is seen in a folder while a file of it is being written.
inline constexpr std::string_view temporaryPrefix = ".mirvel-";

/// Gives a file new content so that a reader, and a machine that loses power, sees all of the old or all of the new:
/// the bytes go to a temporary file beside it, are flushed to the device, and take the file's name.
///
/// - A symbolic link stays one: the file that it leads to is replaced, or made if it is missing.
/// - The owner, the permission bits and the extended attributes of the old file are kept, as far as this process may
///   set them. A new file gets 0644 less what the umask takes away: others never may write it, even with a umask of
///   002, since job files that they may write aren't loaded.
/// - The folder must exist. Anything but a regular file at the path is refused with `BadArgument`.
///
/// On failure the old file is untouched and nothing is left beside it, with one exception: when flushing the folder is
/// what fails, the new content is in place, but may not outlive a loss of power.
Result<void> replaceFile(const std::filesystem::path& path, std::string_view bytes);
Result<void> replaceFile(const std::filesystem::path& path, std::string_view bytes, FileCalls& calls);
/// The same, where a new file gets none of the rights that `mostOpen` doesn't have.
Result<void> replaceFile(const std::filesystem::path& path, std::string_view bytes, mode_t mostOpen);
Result<void> replaceFile(const std::filesystem::path& path, std::string_view bytes, mode_t mostOpen, FileCalls& calls);

/// Whose a file is, and what others may do with it.
struct OwnerAndMode {
  uid_t user = 0;
  gid_t group = 0;
  mode_t mode = 0;
};

/// The same in a folder that is open already, for callers who may not trust the path to it: only the last component of
/// `path` counts, and a link of that name is refused. A file made with `fixed` has that owner and mode, and keeps no
/// attribute that gives rights to anybody. But in place of a file that group or others had fewer rights to, they get no
/// more; and one of the same owner that not everybody could read keeps its group.
Result<void> replaceFileIn(int folder, const std::filesystem::path& path, std::string_view bytes,
                           const std::optional<OwnerAndMode>& fixed, FileCalls& calls);

/// The mode of a file that only its owner may read.
inline constexpr mode_t privateFile = 0600;

/// Makes a folder, and those above it that are missing, for their owner alone. Existing folders stay as they are.
Result<void> makePrivateFolder(const std::filesystem::path& folder);

}  // namespace mirvel
