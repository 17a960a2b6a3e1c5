#pragma once

#include <filesystem>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"

namespace mirvel {

/// Opens a folder component by component, starting at the root directory. No component may be a link, and only root (or
/// the effective user of this process) may have write access to any of them, except for folders with the sticky bit.
///
/// This stops a user who controls a folder on the path from redirecting root to other files: neither a link that is
/// there beforehand nor one that replaces a folder during the operation is followed, since each component is opened in
/// the descriptor of the previous one, and the caller uses the returned descriptor instead of the path.
///
/// Returns `NotFound` if there is no such folder, and `NotPermitted` if it can't be trusted or the path contains "." or
/// "..".
Result<FileDescriptor> openTrustedFolder(const std::filesystem::path& folder);

/// Opens a subfolder of an open folder, with the same checks of its last component.
Result<FileDescriptor> openTrustedFolderIn(int parent, const std::filesystem::path& folder);

}  // namespace mirvel
