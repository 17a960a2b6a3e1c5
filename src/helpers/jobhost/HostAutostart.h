#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/base/Result.h"

namespace mirvel {

/// Has the host started when the user logs in, by an entry in a folder of autostart-spec (freedesktop.org).
class HostAutostart {
 public:
  static constexpr const char* fileName = "mirvel-host.desktop";

  /// An empty folder: the platform has none, and nothing is ever written.
  HostAutostart(std::filesystem::path folder, std::vector<std::string> command)
      : m_folder(std::move(folder)), m_command(std::move(command)) {}

  /// Writes the entry if there is none. One that is there stays as it is, so that whoever switched theirs off keeps it
  /// so, but for a command that was written here before the program moved or changed its options: that one is renewed.
  Result<void> install() const;

 private:
  std::filesystem::path m_folder;
  std::vector<std::string> m_command;
};

}  // namespace mirvel
