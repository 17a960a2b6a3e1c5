#pragma once

#include <filesystem>

namespace mirvel::ui {

/// The folder of the translations: that of the installation, or of the build tree.
std::filesystem::path catalogues();
/// The folder of the help pages, likewise.
std::filesystem::path helpFolder();
/// The folder of the helper programs and modules, likewise.
std::filesystem::path helpersFolder();

}  // namespace mirvel::ui
