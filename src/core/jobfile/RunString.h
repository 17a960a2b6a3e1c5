#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/propertylist/Value.h"

// The command of a job, which a file spreads over the keys `Program` and `ProgramArguments`, as one line of text, and
// the other way round.

namespace mirvel::jobfile {

class Plist;

/// A job's command as the user reads and edits it.
struct RunString {
  std::string run;                      ///< the command line; empty if the job has no command
  std::optional<std::string> iconPath;  ///< the program, whose icon represents the job; only if there are arguments

  bool operator==(const RunString&) const = default;
};

/// The command line of the two keys. Arguments are quoted so that `Text::separateCommand` reads them back. The first
/// argument is left out if it only repeats the program, as is customary:
///
///     /bin/ls and {"ls", "-l"}           =>  /bin/ls -l
///     /usr/bin/env and {"sshd", "a b"}   =>  /usr/bin/env sshd "a b"
RunString makeRunString(const std::optional<std::string>& program,
                        const std::optional<std::vector<std::string>>& programArguments);

/// The two keys that specify what a job runs. See execvp(3): the first argument is the name passed to the program.
struct CommandKeys {
  std::optional<std::string> program = {};
  std::optional<std::vector<std::string>> arguments = {};

  bool operator==(const CommandKeys&) const = default;
};

/// Splits an edited command line into the two keys, in the form of the previous command: if that had a program and a
/// different first argument, so has the result. Otherwise the arguments contain the whole command and there is no
/// program. Both are absent for an empty command line.
CommandKeys commandOf(const std::string& run, const CommandKeys& before);

/// Sets `program` and `programArguments` of a record from its edited command line. If it wasn't edited, both get the
/// values that they have in the file.
void takeArgumentsFromRun(Plist& record);

/// What a save would write, with the command line as edited, but without the repairs and questions that precede a save.
propertylist::Dictionary fileAsEdited(const Plist& record);
/// The same as XML text. Empty if the record can't be written as XML.
std::string textAsEdited(const Plist& record);

}  // namespace mirvel::jobfile
