#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/base/Result.h"

namespace mirvel {

/// The name of the entry that starts the background agent.
inline constexpr const char* agentAutostart = "mirvel-agent.desktop";

/// An entry that starts one of our programs at login, in a folder for autostart as freedesktop.org defines it.
struct AutostartEntry {
  std::filesystem::path file;
  std::string name;
  std::string comment;
  std::vector<std::string> command;  ///< the program with its arguments
  /// A regular expression for the arguments that this or an earlier version writes in an `Exec` line after the program,
  /// whose path may be another: a line of that form isn't a change of the user.
  std::string ownArguments;

  /// Creates the entry if it doesn't exist. An existing entry is left alone, since the user may have disabled or
  /// changed it, except that a command which an earlier version or location of the program has written is replaced.
  /// Fails with the error of the system if the file can't be read or written.
  Result<void> install() const;
  /// Writes the entry, in place of one that may exist.
  Result<void> replace() const;
  /// Removes the entry; succeeds if there is none.
  Result<void> remove() const;
  /// Whether the entry exists and the desktop hasn't disabled it.
  bool isEnabled() const;

 private:
  std::string text() const;
};

}  // namespace mirvel
