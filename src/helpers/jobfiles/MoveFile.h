#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "core/files/ReplaceFile.h"

namespace mirvel {

/// A file in an open folder; only the last component of the path is used for access.
struct FileIn {
  int folder = -1;
  std::filesystem::path path;
};

/// Moves a regular file and replaces its content, so that the file exists exactly once at any moment: it is renamed
/// first, and rewritten afterwards (see `replaceFileIn`, also for `fixed`). If writing fails, the renaming is undone.
/// No file is overwritten: EEXIST if the new name is in use. Returns nullopt, with nothing changed, if the two folders
/// are on different file systems (EXDEV).
std::optional<Result<void>> moveFile(const FileIn& from, const FileIn& to, std::string_view content,
                                     const std::optional<OwnerAndMode>& fixed);

}  // namespace mirvel
