#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <optional>

#include "core/base/Result.h"
#include "core/ports/Console.h"
#include "core/process/FileDescriptor.h"
#include "core/process/ProcessStatus.h"

namespace mirvel {

/// A new folder that is private to the user of this process. The destructor removes it with its contents.
class OwnFolder {
 public:
  /// Creates a folder of mode 0700 with a random name. As `parent` is /run or the like, which only root may write to,
  /// no other user can predict, replace or remove it.
  static Result<OwnFolder> make(const std::filesystem::path& parent);
  OwnFolder(OwnFolder&& other) noexcept;
  OwnFolder& operator=(OwnFolder&&) = delete;
  ~OwnFolder();

  const std::filesystem::path& path() const { return m_path; }

 private:
  explicit OwnFolder(std::filesystem::path path) : m_path(std::move(path)) {}

  std::filesystem::path m_path;  ///< empty after a move
};

/// The process that may use the privileged helper: the one that had it started.
struct AllowedPeer {
  uid_t user = 0;
  std::optional<ProcessIdentity> process = {};  ///< nullopt: any process of the user

  /// Whether this process is at the other end of the socket. The kernel vouches for the user and number of the process;
  /// its start time excludes another process that has got the same number since.
  bool isPeerOf(int socket) const;
};

/// A named socket for a single connection, by a single process. For elevations that can't pass a socket to the helper.
class Listener {
 public:
  /// Creates the socket in an `OwnFolder` of `parent`, such as /run. It belongs to the peer's user and has mode 0600,
  /// so other users can't even connect. Another process of the same user can, and is refused by `accept`.
  static Result<Listener> make(const std::filesystem::path& parent, const AllowedPeer& peer);

  std::filesystem::path address() const { return m_folder.path() / "socket"; }

  /// Waits for the connection of the allowed peer, then closes and removes the socket. Connections of other processes
  /// are logged and closed. Returns `Io` if the peer doesn't connect within the limit.
  Result<FileDescriptor> accept(std::chrono::milliseconds limit, Console& console);

 private:
  Listener(OwnFolder folder, const AllowedPeer& peer) : m_folder(std::move(folder)), m_peer(peer) {}
  Result<void> listen();

  OwnFolder m_folder;
  AllowedPeer m_peer;
  FileDescriptor m_socket;
};

/// Connects to the socket at this path.
Result<FileDescriptor> connectTo(const std::filesystem::path& address);

}  // namespace mirvel
