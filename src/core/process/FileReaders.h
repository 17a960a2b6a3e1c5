#pragma once

#include <sys/types.h>

#include <filesystem>
#include <vector>

namespace mirvel {

/// The processes, besides this one, that have the file open or name it in their command line, such as the shell that
/// runs it as a script. An argument names it by any of its hard or symbolic links, and relative to the working folder.
///
/// Processes of other users are found by their command line only; since their working folder is unknown, a relative
/// path with the same last component counts, too. Looks at every process of the machine, which takes milliseconds.
/// `file` should be absolute, with its links resolved.
std::vector<pid_t> processesWith(const std::filesystem::path& file);

}  // namespace mirvel
