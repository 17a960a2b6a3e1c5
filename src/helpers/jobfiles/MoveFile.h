#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "core/files/ReplaceFile.h"

namespace mirvel {

/// The place of a file in a folder that is open; only the last component of the path counts.
struct FileIn {
  int folder = -1;
  std::filesystem::path path;
};

/// Brings a regular file to another place and gives it new content, so that whenever this is interrupted the file
/// exists exactly once: it is renamed first, and its content replaced then (see `replaceFileIn`). A failure takes the
/// renaming back. Nothing is ever overwritten: a name that is taken is an error (EEXIST). None if the two places can't
/// be reached from each other by renaming (EXDEV); nothing has changed then.
std::optional<Result<void>> moveFile(const FileIn& from, const FileIn& to, std::string_view content,
                                     const std::optional<OwnerAndMode>& fixed);

}  // namespace mirvel
