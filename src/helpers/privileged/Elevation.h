#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

#include "core/support/FileDescriptor.h"
#include "core/support/ProcessRunner.h"

namespace mirvel {

/// How a program is started as root, which may ask the user for a password.
struct Elevation {
  enum class Way {
    None,       ///< the user is root
    Pkexec,     ///< pkexec(1)
    Osascript,  ///< osascript(1), `do shell script ... with administrator privileges`
  };

  Way way = Way::None;
  std::string tool = {};  ///< of the way
  uid_t user = 0;         ///< for whom the helper works

  /// The tool with its arguments, or the program itself.
  std::vector<std::string> command(const std::string& program, const std::vector<std::string>& arguments) const;
};

/// What came of it.
struct Elevated {
  FileDescriptor socket = {};  ///< none: the user said no, or may not
  std::string authData = {};
  bool isCancelled = false;
};

/// Starts the privileged helper and connects to it. Waits for the user. An error if that itself doesn't work.
Result<Elevated> startPrivileged(const Elevation& elevation, const std::string& program,
                                 const std::vector<std::string>& arguments, ProcessRunner& runner);

}  // namespace mirvel
