#include "helpers/host/Daemon.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <set>
#include <thread>
#include <utility>

#include "core/schedule/ZoneStretches.h"
#include "helpers/host/Lifeline.h"
#include "helpers/host/Presence.h"
#include "helpers/host/Server.h"
#include "helpers/host/Session.h"
#include "helpers/host/Succession.h"
#include "helpers/hostdata/HostClient.h"
#include "helpers/hostdata/LoadedJobs.h"
#include "helpers/process/Signals.h"

namespace mirvel::host {

namespace {

namespace fs = std::filesystem;

/// The loop with all that hangs on it.
class Daemon {
 public:
  Daemon(const HostSetup& setup, std::unique_ptr<Presence> presence)
      : m_setup(setup),
        m_session(setup.environment, setup.sessionRecords),
        m_lifeline(Lifeline::grasp(setup.machine)),
        m_host({.folder = setup.places.folder,
                .environment = jobEnvironment(setup.environment),
                .zone = zoneOfThisMachine},
               m_loop),
        m_server(presence->listening(), m_session, m_host, m_loop),
        m_presence(std::move(presence)) {
    m_loop.watch(m_signals.descriptor(), POLLIN, [this](short) { takeSignals(); });
    for (const int descriptor : {m_alarm.timer(), m_alarm.clockChange()}) {
      if (descriptor >= 0) m_loop.watch(descriptor, POLLIN, [this](short) { m_alarm.acknowledge(); });
    }
    watchSurroundings();
    m_host.restore();
    for (const fs::path& folder : setup.jobFolders) m_host.loadEnabled(folder);
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
    if (m_lifeline) {
      m_loop.watch(m_lifeline.number(), POLLIN, [this](short) {
        const bool isCut = Lifeline::isCut(m_lifeline);
        m_mustLook = isCut || m_mustLook;
        if (isCut) m_loop.forget(m_lifeline.number());  // its end is told for ever
      });
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

  /// A machine that is thrown away or left alone and a session that is over take their host with them. Otherwise the
  /// host stays to be found.
  void lookAround() {
    m_mustLook = false;
    if (isMachineGone(m_setup) || Lifeline::isCut(m_lifeline) || m_session.isOver()) return end();
    if (!m_presence->isWhole()) renewPresence();
    if (m_mustNote) m_mustNote = !m_host.noteAgain();
    m_mustLook = m_mustLook || m_mustNote;
  }

  void renewPresence() {
    const auto renewed = m_presence->renew([this](int listening) { m_server.listenAnewAt(listening); });
    if (!renewed) {
      m_mustLook = true;  // the disk may be full, or the folder not be mounted: this is tried again
    } else if (*renewed) {
      m_mustNote = true;  // the notes may have gone with the socket
    } else {
      m_replacedJobs = m_host.noted();
      m_isReplaced = true;
      m_mustNote = false;  // the list is another's now
      end();
    }
  }

  /// The other host was started without knowing of this one's jobs. It tells in its log what it can't load. One that
  /// isn't reached is about to begin, or to end.
  void handOver() {
    using Clock = std::chrono::steady_clock;
    m_host.kill();  // what didn't end in time
    const auto until = Clock::now() + longestQuit + longestAnswer;
    auto handed = offerJobs();
    while (handed && !*handed && Clock::now() < until) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
      handed = offerJobs();
    }
    if (handed && *handed) return;
    m_host.tell("can't hand over its jobs to the next host: " + (handed ? "it isn't reached" : handed.error().text()));
  }

  /// False: there is another host, and it isn't reached.
  Result<bool> offerJobs() {
    const auto taken = HostClient(m_setup.places.socket)
                           .ask(hostdata::TakeOver{.paths = {m_replacedJobs.begin(), m_replacedJobs.end()}});
    if (taken) return true;
    if (!HostClient::isNoHost(taken.error()) && !HostClient::isHangUp(taken.error())) return taken.error();
    const auto presence = Presence::claim(m_setup.places);
    if (!presence) return presence.error();
    return *presence ? noteJobs() : Result<bool>(false);
  }

  /// For whichever host comes next, while none is there.
  Result<bool> noteJobs() {
    LoadedJobs list(LoadedJobs::fileIn(m_setup.places.folder));
    const auto known = list.read();
    if (!known) m_host.tell("can't tell which jobs were loaded: " + known.error().text());
    std::set<fs::path> files(m_replacedJobs.begin(), m_replacedJobs.end());
    if (known) files.insert(known->begin(), known->end());
    const auto written = list.write({files.begin(), files.end()});
    return written ? Result<bool>(true) : written.error();
  }

  const HostSetup& m_setup;
  const Session m_session;
  const FileDescriptor m_lifeline;
  PollLoop m_loop;
  Signals m_signals{SIGCHLD, SIGTERM, SIGINT, SIGHUP};
  Alarm m_alarm;
  std::unique_ptr<PathWatch> m_watch = makePathWatch();  ///< of what the host itself depends on
  Host m_host;
  Server m_server;
  std::unique_ptr<Presence>
      m_presence;  ///< goes before the server hangs up: whoever waits for that may start the next host at once
  std::vector<fs::path> m_replacedJobs;
  bool m_mustLook = true;
  bool m_mustNote = false;  ///< what is loaded, and runs
  bool m_isEnding = false;
  bool m_isReplaced = false;
};

}  // namespace

Result<void> runHost(const HostSetup& setup, const std::function<void()>& isReady) {
  if (Lifeline::isCut(Lifeline::grasp(setup.machine))) {
    return Error{.code = Error::Code::NotFound, .message = "whoever made this machine has gone", .file = setup.machine};
  }
  auto presence = Presence::claim(setup.places);
  if (presence && !*presence && setup.beginsSession) presence = succeed(setup, isReady);
  if (!presence) return presence.error();
  if (!*presence) return {};
  Daemon daemon(setup, *std::move(presence));
  isReady();
  daemon.run();
  return {};
}

}  // namespace mirvel::host
