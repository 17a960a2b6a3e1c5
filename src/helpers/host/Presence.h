#pragma once

#include <memory>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"
#include "helpers/hostdata/HostPlaces.h"
#include "helpers/hostdata/HostSocket.h"

namespace mirvel::host {

/// That a host is there: the lock by which it is the only one of its folder, and the socket at which it is reached.
/// Whoever cleans up a disk may remove either from under it.
class Presence {
 public:
  /// Null: there is another host. Fails if there can't be one.
  static Result<std::unique_ptr<Presence>> claim(const HostPlaces& places);
  Presence(const Presence&) = delete;
  Presence& operator=(const Presence&) = delete;
  /// The socket goes if it is still this one's.
  ~Presence();

  int listening() const { return m_listening.number(); }
  /// Whether others find the lock and the socket where they look for them.
  bool isWhole() const;
  /// Makes anew what has gone, folder and all; `listening` may be another then, and the old one is closed after
  /// `replaced` was called with the new. False: another host has come meanwhile, and this one isn't the host any more.
  template <typename Replaced>
  Result<bool> renew(const Replaced& replaced) {
    auto lock = lockAgain();
    if (!lock) return lock.error();
    if (!*lock) return false;
    auto listening = listenAgain();
    if (!listening) return listening.error();
    if (*listening) replaced(listening->number());
    if (*listening) m_listening = *std::move(listening);
    return true;
  }

 private:
  Presence(HostPlaces places, FileDescriptor lock, FileDescriptor listening);
  /// False: it is another's.
  Result<bool> lockAgain();
  /// None: the socket is there.
  Result<FileDescriptor> listenAgain();
  bool hasLock() const { return FileIdentity::of(m_lock.number()) == FileIdentity::at(lockOf(m_places.folder)); }
  bool hasSocket() const { return m_socket == FileIdentity::at(m_places.socket); }

  HostPlaces m_places;
  FileDescriptor m_lock;
  FileDescriptor m_listening;
  FileIdentity m_socket;  ///< the file of the listening socket
};

}  // namespace mirvel::host
