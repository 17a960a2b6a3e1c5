#pragma once

#include <filesystem>
#include <string_view>

#include "core/support/FileCalls.h"
#include "core/support/Result.h"

namespace mirvel {

/// Gives a file new content so that a reader, and a machine that loses power, sees all of the old or all of the new:
/// the bytes go to a temporary file beside it, are flushed to the device, and take the file's name.
///
/// - A symbolic link stays one: the file that it leads to is replaced, or made if it is missing.
/// - The permission bits of the old file are kept. A new file gets 0644 whatever the umask is: launchd refuses a job
///   file that others may write, which a umask of 002 would give, and the other programs of the user and root must be
///   able to read it.
/// - The folder must exist. Anything but a regular file at the path is refused with `BadArgument`.
///
/// On failure the old file is untouched and nothing is left beside it, with one exception: when flushing the folder is
/// what fails, the new content is in place, but may not outlive a loss of power.
Result<void> replaceFile(const std::filesystem::path& path, std::string_view bytes);
Result<void> replaceFile(const std::filesystem::path& path, std::string_view bytes, FileCalls& calls);

}  // namespace mirvel
