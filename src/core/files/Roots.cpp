#include "core/files/Roots.h"

#include <unistd.h>

#include <vector>

#include "core/process/UserEntry.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

/// The home folder in the user database; "/" if there is none.
fs::path registeredHome() {
  const auto user = userEntry(::getuid());
  return user && user->home.starts_with('/') ? user->home : "/";
}

/// The path in an environment variable, if it is absolute.
fs::path pathIn(const Environment& environment, const std::string& name, const fs::path& fallback) {
  const auto found = environment.find(name);
  return found != environment.end() && found->second.starts_with('/') ? fs::path(found->second) : fallback;
}

/// The autostart folders in `XDG_CONFIG_DIRS`, most important first.
std::vector<fs::path> autostartFolders(const Environment& environment) {
  const auto found = environment.find("XDG_CONFIG_DIRS");
  const std::string_view folders = found != environment.end() ? found->second : std::string_view();
  std::vector<fs::path> result;
  for (const auto folder : String::split(folders, ':')) {
    if (folder.starts_with('/')) result.push_back(fs::path(folder) / "autostart");
  }
  if (result.empty()) result.emplace_back("/etc/xdg/autostart");
  return result;
}

}  // namespace

Roots Roots::forThisMachine(const Environment& environment) {
#ifdef __APPLE__
  (void)environment;  // in a sandbox, HOME is the sandbox's own folder
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
      .publicReports = "/Library/Application Support/Mirvel/Reports",
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
      .publicReports = "/var/lib/mirvel/reports",
  };
}

Roots Roots::below(const fs::path& root) {
  Roots roots = ofLinux(root / "home", {});
  roots.localLibrary = root / roots.localLibrary.relative_path();
  roots.systemLibrary = root / roots.systemLibrary.relative_path();
  roots.publicReports = ofLinux(root / "root" / "home", {}).ownReports();
  for (fs::path& folder : roots.installedAutostart) folder = root / folder.relative_path();
  return roots;
}

}  // namespace mirvel
