#pragma once

#include <filesystem>

namespace mirvel::ui {

/// Where the translations lie: beside the installed program, or in the folder where it was built.
std::filesystem::path catalogues();
/// Where the helper programs and modules lie, likewise.
std::filesystem::path helpersFolder();

}  // namespace mirvel::ui
