#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/base/Result.h"

namespace mirvel {

/// The entry that starts the host at login, in a folder for autostart as freedesktop.org defines it.
class HostAutostart {
 public:
  static constexpr const char* fileName = "mirvel-host.desktop";

  /// `command` is the program with its arguments. With an empty folder, for platforms without one, nothing is written.
  HostAutostart(std::filesystem::path folder, std::vector<std::string> command)
      : m_folder(std::move(folder)), m_command(std::move(command)) {}

  /// Creates the entry if it doesn't exist. An existing entry is left alone, since the user may have disabled or
  /// changed it, except that a command which an earlier version or location of the program has written is replaced.
  /// Fails with the error of the system if the file can't be read or written.
  Result<void> install() const;

 private:
  std::filesystem::path m_folder;
  std::vector<std::string> m_command;
};

}  // namespace mirvel
