#include "core/files/Roots.h"

#include <pwd.h>
#include <unistd.h>

#include <sstream>
#include <vector>

namespace mirvel {

namespace fs = std::filesystem;

namespace {

/// The home folder in the user database, or "/" for a user without one.
fs::path registeredHome() {
  std::vector<char> buffer(std::size_t{1} << 16U);
  passwd entry{};
  passwd* found = nullptr;
  ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
  return found && found->pw_dir && *found->pw_dir == '/' ? found->pw_dir : "/";
}

/// The absolute path in a variable, or else another.
fs::path pathIn(const Environment& environment, const std::string& name, const fs::path& otherwise) {
  const auto found = environment.find(name);
  return found != environment.end() && found->second.starts_with('/') ? fs::path(found->second) : otherwise;
}

/// Those below the folders of `XDG_CONFIG_DIRS`.
std::vector<fs::path> autostartFolders(const Environment& environment) {
  const auto found = environment.find("XDG_CONFIG_DIRS");
  std::istringstream folders(found != environment.end() ? found->second : "");
  std::vector<fs::path> result;
  for (std::string folder; std::getline(folders, folder, ':');) {
    if (folder.starts_with('/')) result.push_back(fs::path(folder) / "autostart");
  }
  if (result.empty()) result.emplace_back("/etc/xdg/autostart");
  return result;
}

}  // namespace

Roots Roots::forThisMachine(const Environment& environment) {
#ifdef __APPLE__
  (void)environment;  // inside a sandbox HOME is the sandbox's own folder
  return ofMac(registeredHome());
#else
  return ofLinux(pathIn(environment, "HOME", registeredHome()), environment);
#endif
}

Roots Roots::ofMac(const fs::path& home) {
  const fs::path library = home / "Library";
  return {
      .home = home,
      .userLibrary = library,
      .applicationSupport = library / "Application Support" / "Mirvel",
      .localLibrary = "/Library",
      .systemLibrary = "/System/Library",
      .defaultsFile = library / "Preferences" / "app.mirvel.plist",
      .localApplications = "/Applications",
  };
}

Roots Roots::ofLinux(const fs::path& home, const Environment& environment) {
  const fs::path allConfig = pathIn(environment, "XDG_CONFIG_HOME", home / ".config");
  const fs::path config = allConfig / "mirvel";
  return {
      .home = home,
      .userLibrary = config,
      .applicationSupport = pathIn(environment, "XDG_DATA_HOME", home / ".local" / "share") / "mirvel",
      .localLibrary = "/etc/mirvel",
      .systemLibrary = "/usr/lib/mirvel",
      .defaultsFile = config / "preferences.plist",
      .ownAutostart = allConfig / "autostart",
      .installedAutostart = autostartFolders(environment),
  };
}

Roots Roots::below(const fs::path& root) {
  Roots roots = ofLinux(root / "home", {});
  roots.localLibrary = root / roots.localLibrary.relative_path();
  roots.systemLibrary = root / roots.systemLibrary.relative_path();
  for (fs::path& folder : roots.installedAutostart) folder = root / folder.relative_path();
  return roots;
}

}  // namespace mirvel
