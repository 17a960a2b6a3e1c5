#pragma once

#include <filesystem>
#include <vector>

#include "core/process/Environment.h"

namespace mirvel {

/// The folders in which the program reads and writes. All are absolute; none need exist.
struct Roots {
  std::filesystem::path home;                    ///< the real user's, even inside a sandbox
  std::filesystem::path userLibrary;             ///< of the user's job folders
  std::filesystem::path applicationSupport;      ///< of the program's own stores
  std::filesystem::path localLibrary;            ///< of the machine's job folders
  std::filesystem::path systemLibrary;           ///< of the job folders that come with the system
  std::filesystem::path defaultsFile;            ///< of the user defaults
  std::filesystem::path localApplications = {};  ///< of application bundles; empty: the platform has none
  std::filesystem::path ownAutostart = {};       ///< of the user's login items; empty likewise
  std::vector<std::filesystem::path> installedAutostart =
      {};  ///< of those that applications bring, the first counts most

  static Roots forThisMachine(const Environment& environment);

  /// The folders of macOS below a home folder.
  static Roots ofMac(const std::filesystem::path& home);
  /// Those of a Linux desktop, by `XDG_CONFIG_HOME`, `XDG_DATA_HOME` and `XDG_CONFIG_DIRS` (the XDG base
  /// directories, which have paths ignored that aren't absolute).
  static Roots ofLinux(const std::filesystem::path& home, const Environment& environment);
  /// Those of a Linux machine below another folder, with the one user `home`: `home/.config/mirvel`, `etc/mirvel` and
  /// so on.
  static Roots below(const std::filesystem::path& root);
};

}  // namespace mirvel
