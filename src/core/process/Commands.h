#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "core/process/Environment.h"

namespace mirvel {

/// Absolute paths of the tools that the program runs or uses as interpreters of scripts. The defaults are the paths of
/// macOS.
struct Commands {
  std::string launchctl = "/bin/launchctl";
  std::string which = "/usr/bin/which";
  std::string open = "/usr/bin/open";
  std::string shell = "/bin/sh";
  std::string bash = "/bin/bash";
  std::string zsh = "/bin/zsh";
  std::string csh = "/bin/csh";
  std::string ksh = "/bin/ksh";
  std::string perl = "/usr/bin/perl";
  std::string php = "/usr/bin/php";
  std::string python = "/usr/bin/python3";
  std::string ruby = "/usr/bin/ruby";
  std::string swift = "/usr/bin/swift";
  std::string osascript = "/usr/bin/osascript";
  std::string automator = "/usr/bin/automator";

  /// The tools of this machine. A tool that isn't at its default path is searched for in the `PATH` of the environment,
  /// also under the name that it has on Linux. If it isn't found, the default path remains, so that a command made with
  /// it is complete and can be reported as missing. Accesses the file system; call it once, at the start.
  static Commands forThisMachine(const Environment& environment);
};

/// Whether the path is a regular file, or a link to one, that this process may execute.
bool isProgram(const std::string& path);

/// Resolves the name of a program as a shell does: a name without slashes is searched for in the absolute folders of
/// the environment's `PATH`, in order, or in a default path if there is no such variable; an absolute path is returned
/// as it is. nullopt if there is no such program, and for relative paths, because the current folder means nothing to
/// jobs.
///
///     findProgram("ls", environment)      // "/bin/ls"
///     findProgram("/bin/ls", environment) // "/bin/ls"
///     findProgram("./ls", environment)    // nullopt
std::optional<std::string> findProgram(std::string_view name, const Environment& environment);

/// The path of the program that this process runs, with symbolic links resolved. Empty if it can't be determined.
std::filesystem::path executablePath();

}  // namespace mirvel
