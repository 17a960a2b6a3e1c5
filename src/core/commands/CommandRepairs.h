#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/locale/Localize.h"
#include "core/ports/Interface.h"
#include "core/process/Commands.h"
#include "core/process/ProcessRunner.h"
#include "core/settings/Defaults.h"

namespace mirvel {

/// Repairs command lines: turns what users type or choose into what launchd needs, an absolute path and plain arguments
/// without shell syntax. While the setting `automaticHelp` is off, all functions except `checkComplexCommand` and
/// `fileArguments` return their argument unchanged. For the main thread; the references must outlive this object.
class CommandRepairs {
 public:
  CommandRepairs(const Defaults& defaults, const Commands& commands, Interface& interface, ProcessRunner& processes,
                 const Localize& localize, std::filesystem::path homeFolder);

  /// The command that runs a file, with quoted paths. None while repairs are off. In this order:
  /// - the command of a desktop entry;
  /// - the executable of an application bundle;
  /// - the file itself, if its mode is 0755, 0744 or 0645;
  /// - the file as argument of an interpreter, according to its extension or, without one, its "#!" line;
  /// - the file as argument of the tool that opens documents.
  std::optional<std::string> commandForFile(const std::filesystem::path& file) const;

  /// Completes the name of a tool at the beginning to its path: "perl x.pl" becomes "/usr/bin/perl x.pl". Unchanged if
  /// the tool isn't found, and for a text of up to two characters or one that begins with a path or quote. Blocks while
  /// it runs which(1), except for a few well-known tools.
  std::string repairCommand(const std::string& text) const;

  /// Replaces each "~" at the beginning, after a blank or before a slash by the path of the home folder, even in
  /// quotes.
  std::string expandTilde(const std::string& text) const;

  /// Removes "sudo " or "/usr/bin/sudo " at the beginning, ignoring case, unless an option of sudo follows. launchd
  /// jobs can't enter a password.
  std::string stripSudo(const std::string& run) const;

  /// Asks what to do if the command contains shell syntax outside quotes, which launchd would pass on literally.
  /// Returns the unchanged command or, if the user chose to save it as a script, the command that runs the script;
  /// `name` is the suggested file name. None if the user cancelled, or if the script couldn't be written, which has
  /// been reported to the user. Doesn't ask if the user has suppressed the question.
  std::optional<std::string> checkComplexCommand(const std::string& run, const std::string& name);

  /// The arguments of a command that are absolute paths, including its program, after expanding "~". They needn't
  /// exist.
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
