#include "helpers/host/Daemon.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

#include "core/schedule/ZoneStretches.h"
#include "helpers/host/EnabledJobs.h"
#include "helpers/host/Presence.h"
#include "helpers/host/Server.h"
#include "helpers/host/Session.h"
#include "helpers/host/Signals.h"
#include "helpers/jobhost/HostClient.h"

namespace mirvel::host {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

/// The loop with all that hangs on it.
class Daemon {
 public:
  Daemon(const HostSetup& setup, std::unique_ptr<Presence> presence)
      : m_setup(setup),
        m_session(setup.environment),
        m_host({.folder = setup.places.folder,
                .environment = jobEnvironment(setup.environment),
                .zone = zoneOfThisMachine},
               m_loop),
        m_server(
            presence->listening(), [this](const Environment& other) { return m_session.isThatOf(other); }, m_host,
            m_loop),
        m_presence(std::move(presence)) {
    m_loop.watch(m_signals.descriptor(), POLLIN, [this](short) { takeSignals(); });
    for (const int descriptor : {m_alarm.timer(), m_alarm.clockChange()}) {
      if (descriptor >= 0) m_loop.watch(descriptor, POLLIN, [this](short) { m_alarm.acknowledge(); });
    }
    watchSurroundings();
    m_host.restore();
    for (const fs::path& folder : setup.jobFolders) loadEnabledJobs(folder, m_host);
  }

  void run() {
    for (settle(); !m_host.hasQuit(); settle()) m_loop.turn(timeout());
    if (m_isReplaced) handOver();
  }

 private:
  void watchSurroundings() {
    for (const fs::path& path :
         {m_setup.places.socket, lockOf(m_setup.places.folder), m_setup.machine, m_session.record()}) {
      if (!path.empty()) m_watch->add(path);
    }
    if (m_watch->descriptor() < 0) return;
    m_loop.watch(m_watch->descriptor(), POLLIN, [this](short) { m_mustLook = !m_watch->take().empty() || m_mustLook; });
  }

  bool mustPoll() const { return m_host.mustPoll() || m_watch->descriptor() < 0 || m_mustLook; }

  int timeout() const {
    constexpr int polling = PathWatch::pollingSeconds * 1000;
    const int wanted = m_alarm.timeout(currentTime());
    return mustPoll() && (wanted < 0 || wanted > polling) ? polling : wanted;
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
    if (!m_isEnding && mustPoll()) lookAround();
    m_host.settle();
    m_server.settle();
    auto wake = m_host.wakeAt();
    if (const auto other = m_server.wakeAt()) wake = std::min(wake.value_or(*other), *other);
    m_alarm.set(wake);
  }

  /// A machine that is thrown away and a session that is over take their host with them. Otherwise the host stays to be
  /// found.
  void lookAround() {
    m_mustLook = false;
    std::error_code failure;
    const bool isMachineGone = !m_setup.machine.empty() && !fs::exists(m_setup.machine, failure) && !failure;
    if (isMachineGone || m_session.isOver()) return end();
    if (!m_presence->isWhole()) renewPresence();
  }

  void renewPresence() {
    const auto renewed = m_presence->renew([this](int listening) { m_server.listenAnewAt(listening); });
    if (!renewed) {
      m_mustLook = true;  // the disk may be full, or the folder not be mounted: this is tried again
    } else if (*renewed) {
      m_mustLook = !m_host.noteAgain();  // the list of jobs may have gone with the socket
    } else {
      for (const HostedJobStatus& job : m_host.status()) m_replacedJobs.push_back(job.path);
      m_isReplaced = true;
      end();
    }
  }

  /// The other host was started without knowing of this one's jobs.
  void handOver() const {
    const HostClient other(m_setup.places.socket);
    for (const std::string& file : m_replacedJobs) {
      (void)other.ask(request::load, {{std::string(key::path), file}});  // it tells in its log what it can't load
    }
  }

  const HostSetup& m_setup;
  const Session m_session;
  PollLoop m_loop;
  Signals m_signals{SIGCHLD, SIGTERM, SIGINT, SIGHUP};
  Alarm m_alarm;
  std::unique_ptr<PathWatch> m_watch = makePathWatch();  ///< of what the host itself depends on
  Host m_host;
  Server m_server;
  std::unique_ptr<Presence>
      m_presence;  ///< goes before the server hangs up: whoever waits for that may start the next host at once
  std::vector<std::string> m_replacedJobs;
  bool m_mustLook = false;
  bool m_isEnding = false;
  bool m_isReplaced = false;
};

/// Asks the host of another session to make room, and takes its place. Null: there is one of this session.
Result<std::unique_ptr<Presence>> replace(const HostSetup& setup) {
  const Session session(setup.environment);
  plist::Dictionary variables;
  for (const auto& [name, value] : session.variables()) variables.set(name, value);
  const auto answer = HostClient(setup.places.socket)
                          .ask(request::beginSession, {{std::string(key::environment), std::move(variables)}},
                               longestQuit + longestAnswer);
  if (answer) return std::unique_ptr<Presence>();
  if (!HostClient::isHangUp(answer.error()) && !HostClient::isNoHost(answer.error())) return answer.error();
  constexpr int attempts = 500;
  for (int attempt = 0; attempt < attempts; ++attempt) {  // it has answered, and is about to let go of the lock
    auto claimed = Presence::claim(setup.places);
    if (!claimed || *claimed) return claimed;
    std::this_thread::sleep_for(10ms);
  }
  return Error{.code = Error::Code::Io, .message = "the job host of another session doesn't end"};
}

}  // namespace

Result<void> runHost(const HostSetup& setup, const std::function<void()>& isReady) {
  auto presence = Presence::claim(setup.places);
  if (presence && !*presence && setup.beginsSession) presence = replace(setup);
  if (!presence) return presence.error();
  if (!*presence) return {};
  Daemon daemon(setup, *std::move(presence));
  isReady();
  daemon.run();
  return {};
}

}  // namespace mirvel::host
