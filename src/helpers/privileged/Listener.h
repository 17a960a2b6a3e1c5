#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>

#include "core/support/Console.h"
#include "core/support/FileDescriptor.h"
#include "core/support/Result.h"

namespace mirvel {

/// A socket in a fresh folder that only this process's user may change, for one connection of one user. Folder and
/// socket are removed at its end.
class Listener {
 public:
  /// `parent` is the folder for such things, such as /run; the socket is the user's, and nobody else may connect.
  static Result<Listener> make(const std::filesystem::path& parent, uid_t user);
  Listener(Listener&& other) noexcept;
  Listener& operator=(Listener&&) = delete;
  ~Listener();

  std::filesystem::path address() const { return m_folder / "socket"; }
  /// For files of this process alone.
  std::filesystem::path privateFolder() const { return m_folder / "private"; }

  /// Waits for the user's connection; those of others are cut off. `Io` if it doesn't come in time.
  Result<FileDescriptor> accept(std::chrono::milliseconds limit, Console& console);

 private:
  explicit Listener(std::filesystem::path folder, uid_t user) : m_folder(std::move(folder)), m_user(user) {}
  Result<void> listen();

  std::filesystem::path m_folder;  ///< empty once it has been moved away
  uid_t m_user;
  FileDescriptor m_socket;
};

/// Connects to a socket by its path.
Result<FileDescriptor> connectTo(const std::filesystem::path& address);

}  // namespace mirvel
