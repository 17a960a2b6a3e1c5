#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace mirvel::ui {

/// Called for each folder on the way, with the name that is looked up in it next.
using PathVisitor = std::function<void(const std::filesystem::path& folder, const std::string& name)>;

/// Walks from the root to an absolute path as the kernel does, through symbolic links and over ".." at their targets,
/// as far as there is something. Each folder is visited before its entry is looked at, so that a watch set by the
/// visitor misses no change. Gives the folder at the end, free of links; none if there is no folder.
std::optional<std::filesystem::path> walkTo(const std::filesystem::path& path, const PathVisitor& visit);

}  // namespace mirvel::ui
