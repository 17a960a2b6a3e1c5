#pragma once

#include <filesystem>

namespace mirvel {

/// The program that this process runs, links resolved; empty if the system doesn't tell.
std::filesystem::path executablePath();

}  // namespace mirvel
