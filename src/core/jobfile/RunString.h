#pragma once

#include <optional>
#include <string>
#include <vector>

namespace mirvel::jobfile {

/// A job's command as a person reads and edits it.
struct RunString {
  std::string run;                      ///< the command line; empty where the job has no command
  std::optional<std::string> iconPath;  ///< the tool, if the job has arguments

  bool operator==(const RunString&) const = default;
};

/// The command line of the keys `Program` and `ProgramArguments`: `/bin/ls -l` of /bin/ls and {ls, -l}. Arguments are
/// quoted where `Text::separateCommand` needs it to read them back.
RunString makeRunString(const std::optional<std::string>& program,
                        const std::optional<std::vector<std::string>>& programArguments);

/// The two keys that say what a job runs.
struct Command {
  std::optional<std::string> program = {};
  std::optional<std::vector<std::string>> arguments = {};

  bool operator==(const Command&) const = default;
};

/// The keys for a command line that was edited, in the form that the command had before: a program with a first
/// argument of another name keeps it. Otherwise the whole command becomes the arguments, and there is no program.
Command commandOf(const std::string& run, const Command& before);

}  // namespace mirvel::jobfile
