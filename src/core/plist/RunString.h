#pragma once

#include <optional>
#include <string>
#include <vector>

namespace mirvel::launchd {

/// A job's command as a person reads and edits it.
struct RunString {
  std::string run;                      ///< the command line; empty where the job has no command
  std::optional<std::string> iconPath;  ///< the tool, if the job has arguments

  bool operator==(const RunString&) const = default;
};

/// The command line of the keys `Program` and `ProgramArguments`: `/bin/ls -l` of /bin/ls and {ls, -l}. Arguments with
/// blanks are quoted, unless they bring quotes or backslashes of their own.
RunString makeRunString(const std::optional<std::string>& program,
                        const std::optional<std::vector<std::string>>& programArguments);

}  // namespace mirvel::launchd
