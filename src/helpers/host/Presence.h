#pragma once

#include <functional>
#include <memory>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"
#include "helpers/hostdata/HostPlaces.h"

namespace mirvel::host {

/// What makes a process the host of a folder: the lock that keeps other hosts out, and the socket at which clients
/// reach it. A cleanup of the disk may delete the files of both; `renew` then creates them again. For one thread.
class Presence {
 public:
  /// Locks the folder, creating it if necessary, and listens. Null if another host has the lock. Fails if the folder
  /// belongs to another user or a file can't be created.
  static Result<std::unique_ptr<Presence>> claim(const HostPlaces& places);
  Presence(const Presence&) = delete;
  Presence& operator=(const Presence&) = delete;
  /// Deletes the socket unless another host has replaced it.
  ~Presence();

  /// The listening socket, non-blocking; valid until `renew` replaces it.
  int listening() const { return m_listening.number(); }
  /// Whether the files of the lock and the socket still exist and are those of this host.
  bool isWhole() const;
  /// Creates again what was deleted, including the folder. If the socket is replaced, calls `replaced` with the new one
  /// before the old one is closed. False if another host has taken the lock in the meantime: this process isn't the
  /// host any more. Fails if a file can't be created now; the call can be repeated.
  Result<bool> renew(const std::function<void(int listening)>& replaced);

 private:
  Presence(HostPlaces places, FileDescriptor lock, FileDescriptor listening);
  /// False if another host has the lock.
  Result<bool> lockAgain();
  /// A new socket, or none if it still exists.
  Result<FileDescriptor> listenAgain();
  bool hasLock() const { return FileIdentity::of(m_lock.number()) == FileIdentity::at(m_places.lock()); }
  bool hasSocket() const { return m_socket == FileIdentity::at(m_places.socket); }

  HostPlaces m_places;
  FileDescriptor m_lock;
  FileDescriptor m_listening;
  FileIdentity m_socket;  ///< the file of `m_listening`
};

}  // namespace mirvel::host
