#pragma once

#include <filesystem>
#include <vector>

#include "core/ports/LoginItems.h"

namespace mirvel {

/// The login items that application bundles carry in `Contents/Library/LoginItems`. Bundles are looked for in the
/// folder itself and one folder deep; of each the first item by name counts. Hidden entries are left out, and so is
/// what can't be read. Sorted by path.
std::vector<LoginItems::Bundled> bundledItems(const std::filesystem::path& applications);

}  // namespace mirvel
