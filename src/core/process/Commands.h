#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/process/Environment.h"

namespace mirvel {

/// Full paths of the tools that the program runs, or that it puts in front of a script. They are the usual places of
/// macOS; where one of them has no such tool, the one found in the search path stands there. A tool that the machine
/// doesn't have keeps its usual place, so that a command made with it is complete and can be marked as missing.
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

  /// Looks once, with the `PATH` of the environment.
  static Commands forThisMachine(const Environment& environment);
};

/// Whether there is a regular file that this user may run.
bool isProgram(const std::string& path);

/// The full path of a program: of a name, the first in the absolute folders of the environment's `PATH`; an absolute
/// path stands for itself. None if there is no such program, and for a relative path, which is of no known folder.
std::optional<std::string> findProgram(std::string_view name, const Environment& environment);

}  // namespace mirvel
