#pragma once

#include <filesystem>
#include <vector>

#include "core/ports/LoginItems.h"

namespace mirvel {

/// Finds the login items in `Contents/Library/LoginItems` of application bundles. Searches the folder and its direct
/// subfolders for bundles, and uses the first item of each by name. Skips hidden entries and whatever can't be read.
/// Sorted by path.
std::vector<LoginItems::Bundled> bundledItems(const std::filesystem::path& applications);

}  // namespace mirvel
