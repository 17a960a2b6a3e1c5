#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Image.h"
#include "core/locale/Collator.h"
#include "core/process/Environment.h"

namespace mirvel {

/// An application of the desktop.
struct InstalledApplication {
  std::string id;    ///< desktop file ID, such as "org.example.editor.desktop"
  std::string name;  ///< in the user's language
  std::optional<Image> icon = {};
  std::filesystem::path path;  ///< of its desktop entry

  bool operator==(const InstalledApplication&) const = default;
};

/// The applications of a Linux desktop that can be started and are to be shown, by name (freedesktop.org,
/// desktop-entry-spec 1.5): the entries below `$XDG_DATA_HOME/applications` and then the `$XDG_DATA_DIRS/applications`.
/// An entry hides all of its ID in folders that count less. Reads many small files.
std::vector<InstalledApplication> installedApplications(const Environment& environment,
                                                        const std::filesystem::path& home, const std::string& locale,
                                                        const Collator& collator);

}  // namespace mirvel
