#pragma once

#include <filesystem>
#include <vector>

#include "core/process/Environment.h"

namespace mirvel {

/// The folders in which the program reads and writes. All paths are absolute; the folders needn't exist. Everything
/// that accesses files takes its paths from here, so that tests and the demo can work in a temporary folder.
struct Roots {
  std::filesystem::path home;                    ///< of the real user, even in a sandbox
  std::filesystem::path userLibrary;             ///< contains the user's job folders
  std::filesystem::path applicationSupport;      ///< contains the program's own stores
  std::filesystem::path localLibrary;            ///< contains the job folders of the machine
  std::filesystem::path systemLibrary;           ///< contains the job folders of the operating system
  std::filesystem::path defaultsFile;            ///< the settings, a property list
  std::filesystem::path localApplications = {};  ///< application bundles; empty: the platform has none
  std::filesystem::path ownAutostart = {};       ///< the user's login items as desktop entries; empty: likewise
  /// Login items that applications install; an entry hides those of the same name in later folders.
  std::vector<std::filesystem::path> installedAutostart = {};
  /// Where the host of root publishes what it reports of its jobs, for everybody to read.
  std::filesystem::path publicReports = {};

  /// Where the host of the user keeps the same; accessible to the user only.
  std::filesystem::path ownReports() const { return applicationSupport / "host" / "reports"; }

  /// Where the background agent keeps its files.
  std::filesystem::path ownAgent() const { return applicationSupport / "agent"; }
  /// Where the helper that acts as the user notes what it is about to change; see `ChangeNotes`.
  std::filesystem::path ownChanges() const { return ownAgent() / "changes.plist"; }
  /// Where the helper that acts as root does, for everybody to read.
  std::filesystem::path publicChanges() const { return publicReports.parent_path() / "changes.plist"; }

  /// Where the helper that acts as the user keeps the files of tests while they run.
  std::filesystem::path ownTests() const { return applicationSupport / "tests"; }

  /// The folders of this platform, for the user who runs this process.
  static Roots forThisMachine(const Environment& environment);

  /// The folders of macOS for a home folder.
  static Roots ofMac(const std::filesystem::path& home);
  /// The folders of a Linux desktop according to `XDG_CONFIG_HOME`, `XDG_DATA_HOME` and `XDG_CONFIG_DIRS`. As the
  /// XDG rules for base directories require, relative paths in these variables are ignored.
  static Roots ofLinux(const std::filesystem::path& home, const Environment& environment);
  /// The folders of a Linux desktop moved below `root`: `home/.config/mirvel`, `etc/mirvel` and so on, for a single
  /// user whose home folder is `home`. The host that plays the role of root's has the folders below `root/root`.
  static Roots below(const std::filesystem::path& root);
};

}  // namespace mirvel
