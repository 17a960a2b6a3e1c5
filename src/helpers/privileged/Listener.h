#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>

#include "core/ports/Console.h"
#include "core/process/FileDescriptor.h"
#include "helpers/privileged/OwnFolder.h"
#include "helpers/process/ProcessIdentity.h"

namespace mirvel {

/// Who may ask the privileged helper: the one process that had it started.
struct Asker {
  uid_t user = 0;
  std::optional<ProcessIdentity> process = {};  ///< none: any of the user's

  /// Whether it is at the other end of the socket.
  bool isPeerOf(int socket) const;
};

/// A socket in a fresh folder that only this process's user may change, for one connection of one process. For
/// elevations that pass no socket on.
class Listener {
 public:
  /// `parent` is the folder for such things, such as /run; the socket is the user's, and nobody else may connect.
  static Result<Listener> make(const std::filesystem::path& parent, const Asker& asker);

  std::filesystem::path address() const { return m_folder.path() / "socket"; }

  /// Waits for the asker's connection; those of others are cut off. `Io` if it doesn't come in time.
  Result<FileDescriptor> accept(std::chrono::milliseconds limit, Console& console);

 private:
  Listener(OwnFolder folder, const Asker& asker) : m_folder(std::move(folder)), m_asker(asker) {}
  Result<void> listen();

  OwnFolder m_folder;
  Asker m_asker;
  FileDescriptor m_socket;
};

/// Connects to a socket by its path.
Result<FileDescriptor> connectTo(const std::filesystem::path& address);

}  // namespace mirvel
