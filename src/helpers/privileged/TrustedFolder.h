#pragma once

#include <filesystem>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"

namespace mirvel {

/// Opens a folder component by component from the root, by no link and by no folder that anybody but root (or the user
/// that this process acts as) could change. `NotFound` if there is none, `NotPermitted` if it can't be trusted.
Result<FileDescriptor> openTrustedFolder(const std::filesystem::path& folder);

/// The same for one folder in another.
Result<FileDescriptor> openTrustedFolderIn(int parent, const std::filesystem::path& folder);

}  // namespace mirvel
