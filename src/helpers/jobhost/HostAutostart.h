#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/support/Result.h"

namespace mirvel::host {

/// Has the host started when the user logs in, by an entry in a folder of autostart-spec (freedesktop.org).
class HostAutostart {
 public:
  static constexpr const char* fileName = "mirvel-host.desktop";

  /// An empty folder: the platform has none, and nothing is ever written.
  HostAutostart(std::filesystem::path folder, std::vector<std::string> command)
      : m_folder(std::move(folder)), m_command(std::move(command)) {}

  /// Writes the entry unless there is one: whoever switched theirs off keeps it so.
  Result<void> install() const;

 private:
  std::filesystem::path m_folder;
  std::vector<std::string> m_command;
};

}  // namespace mirvel::host
