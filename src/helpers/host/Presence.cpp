#include "helpers/host/Presence.h"

#include <unistd.h>

#include <utility>

namespace mirvel::host {

Result<std::unique_ptr<Presence>> Presence::claim(const HostPlaces& places) {
  if (const auto made = places.make(); !made) return made.error();
  auto lock = lockHost(places);
  if (!lock) return lock.error();
  if (!*lock) return std::unique_ptr<Presence>();
  auto listening = listenAt(places.socket);
  if (!listening) return listening.error();
  return std::unique_ptr<Presence>(new Presence(places, *std::move(lock), *std::move(listening)));
}

Presence::Presence(HostPlaces places, FileDescriptor lock, FileDescriptor listening)
    : m_places(std::move(places)),
      m_lock(std::move(lock)),
      m_listening(std::move(listening)),
      m_socket(FileIdentity::at(m_places.socket)) {}

// Without the lock, the socket is that of another host, or is about to be.
Presence::~Presence() {
  if (hasLock() && hasSocket()) ::unlink(m_places.socket.c_str());
}

bool Presence::isWhole() const {
  return hasLock() && hasSocket();
}

Result<bool> Presence::renew(const std::function<void(int)>& replaced) {
  // The lock first: only its owner may replace the socket.
  auto lock = lockAgain();
  if (!lock || !*lock) return lock;
  auto listening = listenAgain();
  if (!listening) return listening.error();
  if (*listening) {
    replaced(listening->number());
    m_listening = *std::move(listening);
  }
  return true;
}

Result<bool> Presence::lockAgain() {
  if (hasLock()) return true;
  if (const auto made = m_places.make(); !made) return made.error();
  auto lock = lockHost(m_places);
  if (!lock) return lock.error();
  if (!*lock) return false;
  m_lock = *std::move(lock);
  return true;
}

Result<FileDescriptor> Presence::listenAgain() {
  if (hasSocket()) return FileDescriptor();
  auto listening = listenAt(m_places.socket);
  if (listening) m_socket = FileIdentity::at(m_places.socket);
  return listening;
}

}  // namespace mirvel::host
