#pragma once

#include <string_view>

/// Names and addresses that several programs of the family share.
namespace mirvel::Const {

/// The `PATH` that is written into new jobs: the folders where users install tools, and those of the system. launchd's
/// own default has only the latter.
#ifdef __APPLE__
inline constexpr std::string_view defaultPATH =
    "/opt/homebrew/bin:/opt/homebrew/sbin:/usr/local/bin:/usr/local/sbin:/usr/bin:/bin:/usr/sbin:/sbin";
#else
inline constexpr std::string_view defaultPATH = "/usr/local/bin:/usr/local/sbin:/usr/bin:/bin:/usr/sbin:/sbin";
#endif

/// Bundle identifier of the background agent.
inline constexpr std::string_view agent = "app.mirvel.agent";
/// Label prefix of the program's own internal helpers, which lists hide by default.
inline constexpr std::string_view excludePrefix = "app.mirvel.";
/// Help site and support address.
inline constexpr std::string_view siteURL = "https://mirvel.app";
inline constexpr std::string_view supportMail = "support@mirvel.app";
/// The manual page of job files.
#ifdef __APPLE__
inline constexpr std::string_view launchdManual = "x-man-page://5/launchd.plist";
#else
inline constexpr std::string_view launchdManual = "https://keith.github.io/xcode-man-pages/launchd.plist.5.html";
#endif
/// URL scheme by which other programs refer to a job.
inline constexpr std::string_view jobScheme = "mirvel";
/// Between a title and a detail.
inline constexpr std::string_view separator = " \u2013 ";

namespace AppName {
inline constexpr std::string_view mirvel = "Mirvel";
inline constexpr std::string_view systemPreferences = "System Settings";
}  // namespace AppName

namespace FileName {
inline constexpr std::string_view dsStore = ".DS_Store";
/// What the user doesn't want to be notified about; see `Exceptions`.
inline constexpr std::string_view exceptions = "Exceptions.plist";
}  // namespace FileName

/// Folders below a library folder.
namespace PathComponent {
inline constexpr std::string_view launchAgents = "LaunchAgents";
inline constexpr std::string_view launchDaemons = "LaunchDaemons";
inline constexpr std::string_view startupItems = "StartupItems";
inline constexpr std::string_view privilegedHelperTool = "PrivilegedHelperTools";
}  // namespace PathComponent

}  // namespace mirvel::Const
