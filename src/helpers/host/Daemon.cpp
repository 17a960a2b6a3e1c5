#include "helpers/host/Daemon.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "core/schedule/ZoneStretches.h"
#include "helpers/host/HostSocket.h"
#include "helpers/host/Server.h"
#include "helpers/host/Signals.h"

namespace mirvel::host {

namespace {

/// The loop with all that hangs on it.
class Daemon {
 public:
  Daemon(const Places& places, const Environment& environment, FileDescriptor listening)
      : m_host({.folder = places.folder, .environment = jobEnvironment(environment), .zone = zoneOfThisMachine},
               m_loop),
        m_server(std::move(listening), m_host, m_loop) {
    m_loop.watch(m_signals.descriptor(), POLLIN, [this](short) { takeSignals(); });
    for (const int descriptor : {m_alarm.timer(), m_alarm.clockChange()}) {
      if (descriptor >= 0) m_loop.watch(descriptor, POLLIN, [this](short) { m_alarm.acknowledge(); });
    }
    m_host.restore();
  }

  void run() {
    for (settle(); !m_host.hasQuit(); settle()) m_loop.turn(timeout());
  }

 private:
  int timeout() const {
    constexpr int polling = PathWatch::pollingSeconds * 1000;
    const int wanted = m_alarm.timeout(currentTime());
    return m_host.mustPoll() && (wanted < 0 || wanted > polling) ? polling : wanted;
  }

  void takeSignals() {
    for (const int number : m_signals.take()) {
      if (number == SIGCHLD) m_host.collect();
      if (number != SIGCHLD) end();
    }
  }

  void end() {
    if (!m_isEnding) m_host.quit();
    m_isEnding = true;
  }

  void settle() {
    if (m_server.shallQuit()) end();
    m_host.settle();
    m_server.settle();
    auto wake = m_host.wakeAt();
    if (const auto other = m_server.wakeAt()) wake = std::min(wake.value_or(*other), *other);
    m_alarm.set(wake);
  }

  PollLoop m_loop;
  Signals m_signals{SIGCHLD, SIGTERM, SIGINT, SIGHUP};
  Alarm m_alarm;
  Host m_host;
  Server m_server;
  bool m_isEnding = false;
};

}  // namespace

Result<void> runHost(const Places& places, const Environment& environment, const std::function<void()>& isReady) {
  const auto made = places.make();
  if (!made) return made.error();
  const auto lock = lockFolder(places.folder);
  if (!lock) return lock.error();
  if (!*lock) return {};
  auto listening = listenAt(places.socket);
  if (!listening) return listening.error();
  Daemon daemon(places, environment, *std::move(listening));
  isReady();
  daemon.run();
  ::unlink(places.socket.c_str());
  return {};
}

}  // namespace mirvel::host
