#pragma once

#include <sys/types.h>

#include <filesystem>

#include "core/base/Result.h"
#include "core/files/Roots.h"
#include "core/process/FileDescriptor.h"

namespace mirvel {

/// Where the host of a user has its files and its socket. This follows from the user's folders alone, so that a host
/// that was started at login and a client in a terminal, whose environments differ, use the same place.
struct HostPlaces {
  std::filesystem::path folder;  ///< accessible to the user only
  std::filesystem::path socket;
  std::filesystem::path reports;  ///< the folder in which it publishes the reports of its jobs
  bool areReportsPublic = false;  ///< whether everybody may read them

  static HostPlaces of(const Roots& roots);
  /// The places of root's own host: they are the same, except that its reports are public.
  static HostPlaces ofRoot(const Roots& roots);

  std::filesystem::path lock() const { return folder / "lock"; }
  std::filesystem::path log() const { return folder / "log"; }                  ///< a folder, see `StoredLog`
  std::filesystem::path runs() const { return folder / "runs"; }                ///< a folder, see `RunRecords`
  std::filesystem::path loadedJobs() const { return folder / "loaded.plist"; }  ///< see `LoadedJobs`

  /// Creates the folder, or restricts an existing one to the user. Fails with `NotPermitted` if it belongs to another
  /// user or isn't a folder, else with the error of the system.
  Result<void> make() const;
};

/// Identifies the file at a path (a link isn't followed) or of a descriptor; all zero if there is none.
struct FileIdentity {
  dev_t device = 0;
  ino_t node = 0;

  static FileIdentity at(const std::filesystem::path& path);
  static FileIdentity of(int file);
  bool operator==(const FileIdentity&) const = default;
};

/// Takes the lock that only the host of these places has; none if another process has it. The lock is released when the
/// descriptor is closed, also by the end of the process.
Result<FileDescriptor> lockHost(const HostPlaces& places);

/// Creates a listening socket, non-blocking and accessible to this user only. The caller has the lock, so a socket that
/// exists already is left from a host that has ended, and is replaced.
///
/// The address of a socket has room for about 100 bytes (unix(7)). On Linux, longer paths are reached through their
/// open folder (/proc/self/fd); elsewhere they fail with `LimitExceeded`.
Result<FileDescriptor> listenAt(const std::filesystem::path& path);

/// Connects to the host that listens at the path; `NotRunning` if there is none. Thread-safe.
Result<FileDescriptor> connectToHost(const std::filesystem::path& path);

/// Whether the peer of a socket has the user of this process, or root.
bool isTrustedPeer(int socket);

}  // namespace mirvel
