#pragma once

#include <string_view>

namespace mirvel::Misc {

/// The `PATH` that is written into new jobs, since launchd's own one has few folders: those where users put their tools
/// and those of the system.
#ifdef __APPLE__
inline constexpr std::string_view defaultPATH =
    "/opt/homebrew/bin:/opt/homebrew/sbin:/usr/local/bin:/usr/local/sbin:/usr/bin:/bin:/usr/sbin:/sbin";
#else
inline constexpr std::string_view defaultPATH = "/usr/local/bin:/usr/local/sbin:/usr/bin:/bin:/usr/sbin:/sbin";
#endif

}  // namespace mirvel::Misc
