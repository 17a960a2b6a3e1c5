#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace mirvel::ui {

/// Called for each folder along a path, with the name that is looked up in it next.
using PathVisitor = std::function<void(const std::filesystem::path& folder, const std::string& name)>;

/// Resolves an absolute path from the root as the kernel does, following symbolic links, with `..` relative to their
/// targets, as far as the path exists. `visit` is called for each folder before its entry is read, so that a watch set
/// by it can't miss a change. Returns the resolved folder, or nullopt if the path doesn't lead to a folder.
std::optional<std::filesystem::path> walkTo(const std::filesystem::path& path, const PathVisitor& visit);

}  // namespace mirvel::ui
