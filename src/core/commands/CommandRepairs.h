#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/locale/Localize.h"
#include "core/ports/Interface.h"
#include "core/process/Commands.h"
#include "core/process/ProcessRunner.h"
#include "core/settings/Defaults.h"

namespace mirvel {

/// What a workable command line is: the steps between what a person types or chooses and what launchd wants, an
/// absolute path and plain arguments. All but `checkComplexCommand` and `fileArguments` do nothing while
/// `Defaults::automaticHelp` is off. For the main thread; the references must outlive the object.
class CommandRepairs {
 public:
  CommandRepairs(const Defaults& defaults, const Commands& commands, Interface& interface, ProcessRunner& processes,
                 const Localize& localize, std::filesystem::path homeFolder);

  /// The command that runs a file: the executable of an application bundle, the command of a desktop entry, the file
  /// itself if its permissions are those of a usual program, else an interpreter with the file, by its extension or its
  /// "#!" line, and at last the tool that opens it. None if repairs are off.
  std::optional<std::string> commandForFile(const std::filesystem::path& file) const;

  /// With the full path in front of a bare tool name: "/usr/bin/perl x.pl" for "perl x.pl". May run a process.
  std::string repairCommand(const std::string& text) const;

  /// With each "~" that stands for the home folder replaced by its path: at the start, before a slash, or behind a
  /// blank.
  std::string expandTilde(const std::string& text) const;

  /// Without a leading "sudo " or "/usr/bin/sudo ", whatever its case, unless an option of sudo follows.
  std::string stripSudo(const std::string& run) const;

  /// Asks what to do about a command with a sign of shell syntax outside quotes, which launchd takes literally. Gives
  /// the command as it was, or one that runs the script in which the user saved it. None: the user went back, or the
  /// script can't be written, which they were told. `name` is suggested for the script.
  std::optional<std::string> checkComplexCommand(const std::string& run, const std::string& name);

  /// The files that a command names, its program among them, whether they exist or not.
  std::vector<std::filesystem::path> fileArguments(const std::string& run) const;

 private:
  std::string commandOfEntry(const std::vector<std::string>& words) const;
  std::optional<std::string> directoryFor(const std::string& word) const;
  std::optional<std::string> lookUp(const std::string& word) const;
  std::optional<std::string> asShellScript(const std::string& run, const std::string& name);

  const Defaults& m_defaults;
  const Commands& m_commands;
  Interface& m_interface;
  ProcessRunner& m_processes;
  const Localize& m_localize;
  std::filesystem::path m_homeFolder;
};

}  // namespace mirvel
