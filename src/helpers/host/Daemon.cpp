#include "helpers/host/Daemon.h"

#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <set>
#include <system_error>
#include <thread>
#include <utility>

#include "core/files/RegularFile.h"
#include "core/schedule/ZoneStretches.h"
#include "helpers/host/FileSystemWatch.h"
#include "helpers/host/Lifeline.h"
#include "helpers/host/Presence.h"
#include "helpers/host/Server.h"
#include "helpers/host/Session.h"
#include "helpers/hostdata/HostClient.h"
#include "helpers/hostdata/LoadedJobs.h"
#include "helpers/process/Signals.h"

namespace mirvel::host {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// Whether the folder that represents a machine was removed. Errors don't count: it may be unreachable for a moment.
bool isMachineGone(const HostSetup& setup) {
  std::error_code failure;
  return !setup.machine.empty() && !fs::exists(setup.machine, failure) && !failure;
}

hostdata::BeginSession requestFor(const HostSetup& setup, const Session& session) {
  const auto& variables = session.variables();
  return {.environment = {variables.begin(), variables.end()},
          .folders = {setup.jobFolders.begin(), setup.jobFolders.end()}};
}

/// Waits until the host of another session closes the connection. False if it was asked to end, which it announces by a
/// second reply, or if this session is over before.
bool outlives(const Session& session, const FileDescriptor& host, wire::FrameReader& reader) {
  // The second reply may have arrived together with the first one.
  if (const auto buffered = reader.next(); !buffered || *buffered) return false;
  const auto watch = makePathWatch();
  if (!session.record().empty()) watch->add(session.record());
  const int pause = watch->isPolling() ? PathWatch::pollingSeconds * 1000 : -1;
  while (!session.isOver()) {
    std::array<pollfd, 2> waiting = {{{.fd = host.number(), .events = POLLIN, .revents = 0},
                                      {.fd = watch->descriptor(), .events = POLLIN, .revents = 0}}};
    if (::poll(waiting.data(), waiting.size(), pause) < 0) continue;
    char byte = 0;
    if (waiting[0].revents != 0) return readUninterrupted(host.number(), &byte, 1) <= 0;
    (void)watch->take();
  }
  return false;
}

/// Takes the place of the host of another session: immediately if that session is over, otherwise when its host ends,
/// which it waits for as long as its own session is open. Calls `isReady` before it waits. Null if there is another
/// host or should be none.
Result<std::unique_ptr<Presence>> succeed(const HostSetup& setup, const std::function<void()>& isReady) {
  using SteadyClock = std::chrono::steady_clock;  // unaffected by changes of the wall clock
  const Session session(setup.environment, setup.sessionRecords);
  constexpr auto patience = longestQuit + longestAnswer;
  for (auto until = SteadyClock::now() + patience; SteadyClock::now() < until;) {
    if (isMachineGone(setup)) return std::unique_ptr<Presence>();
    auto claimed = Presence::claim(setup.places);
    if (!claimed || *claimed) return claimed;
    const auto host = HostClient(setup.places.socket).connect();
    wire::FrameReader reader;
    const auto answer = host ? HostClient::askAt(*host, reader, requestFor(setup, session), patience)
                             : Result<hostdata::BeginSession::Answer>(host.error());
    if (answer && !answer->staysOpen) return std::unique_ptr<Presence>();
    if (answer) {
      isReady();
      if (!outlives(session, *host, reader)) return std::unique_ptr<Presence>();
      until = SteadyClock::now() + patience;
    } else if (!HostClient::isHangUp(answer.error()) && !HostClient::isNoHost(answer.error())) {
      return answer.error();
    } else {
      // Of a killed host, a child that hasn't called exec yet can hold the lock for a moment.
      std::this_thread::sleep_for(10ms);
    }
  }
  return Error{.code = Error::Code::Io, .message = "the job host of another session doesn't end in time"};
}

/// The host process: its poll loop with everything that runs on it.
class Daemon {
 public:
  Daemon(const HostSetup& setup, std::unique_ptr<Presence> presence)
      : m_setup(setup),
        m_session(setup.environment, setup.sessionRecords),
        m_lifeline(Lifeline::open(setup.machine)),
        m_host({.places = setup.places, .environment = jobEnvironment(setup.environment), .zone = zoneOfThisMachine},
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
    m_host.leaveReports();
    if (m_isReplaced) handOver();
  }

 private:
  void watchSurroundings() {
    for (const fs::path& path : {m_setup.places.socket, m_setup.places.lock(), m_setup.machine, m_session.record()}) {
      if (!path.empty()) m_watch->add(path);
    }
    if (m_lifeline) {
      m_loop.watch(m_lifeline.number(), POLLIN, [this](short) {
        const bool isCut = Lifeline::isCut(m_lifeline);
        m_mustCheck = isCut || m_mustCheck;
        if (isCut) m_loop.forget(m_lifeline.number());  // it stays readable, and the loop would spin
      });
    }
    if (m_watch->descriptor() < 0) return;
    m_loop.watch(m_watch->descriptor(), POLLIN,
                 [this](short) { m_mustCheck = !m_watch->take().empty() || m_mustCheck; });
  }

  bool mustPoll() const { return m_host.mustPoll() || m_watch->isPolling() || m_mustCheck; }

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
    if (!m_isEnding && mustPoll()) checkSurroundings();
    m_host.settle();
    m_server.settle();
    if (!m_isEnding && m_host.hasOnlyTested() && m_server.isIdle()) end();
    auto wake = m_host.wakeAt();
    if (const auto other = m_server.wakeAt()) wake = std::min(wake.value_or(*other), *other);
    m_alarm.set(wake);
  }

  /// Ends the host with its machine or session. Otherwise sees to it that clients still find it.
  void checkSurroundings() {
    m_mustCheck = false;
    if (isMachineGone(m_setup) || Lifeline::isCut(m_lifeline) || m_session.isOver()) return end();
    if (!m_presence->isWhole()) renewPresence();
    if (m_mustSave) m_mustSave = !m_host.saveAgain();
    m_mustCheck = m_mustCheck || m_mustSave;
  }

  void renewPresence() {
    const auto renewed = m_presence->renew([this](int listening) { m_server.replaceSocket(listening); });
    if (!renewed) {
      m_mustCheck = true;  // the disk may be full or the folder not mounted: tried again
    } else if (*renewed) {
      m_mustSave = true;  // the list and the records may have been deleted with the socket
    } else {
      m_jobsToHandOver = m_host.savedFiles();
      m_isReplaced = true;
      m_mustSave = false;  // the list belongs to the other host now
      end();
    }
  }

  /// Sends the list of jobs to the host that has taken this one's place, which was started without it. If that host
  /// can't be reached, it is starting or ending at this moment, so this is repeated.
  void handOver() {
    using SteadyClock = std::chrono::steady_clock;
    m_host.kill();  // or the other host would start jobs of which processes still run
    const auto until = SteadyClock::now() + longestQuit + longestAnswer;
    auto handed = offerJobs();
    while (handed && !*handed && SteadyClock::now() < until) {
      std::this_thread::sleep_for(10ms);
      handed = offerJobs();
    }
    if (handed && *handed) return;
    m_host.logMessage("can't hand over its jobs to the next host: " +
                      (handed ? "it can't be reached" : handed.error().text()));
  }

  /// False if there is another host that can't be reached at the moment.
  Result<bool> offerJobs() {
    const auto taken = HostClient(m_setup.places.socket)
                           .ask(hostdata::TakeOver{.paths = {m_jobsToHandOver.begin(), m_jobsToHandOver.end()}});
    if (taken) return true;
    if (!HostClient::isNoHost(taken.error()) && !HostClient::isHangUp(taken.error())) return taken.error();
    const auto presence = Presence::claim(m_setup.places);
    if (!presence) return presence.error();
    return *presence ? saveJobs() : Result<bool>(false);
  }

  /// Adds the jobs to the list of the next host. Called with the lock, while there is no other host.
  Result<bool> saveJobs() {
    LoadedJobs list(m_setup.places.loadedJobs());
    const auto known = list.read();
    if (!known) m_host.logMessage("can't determine which jobs were loaded: " + known.error().text());
    std::set<fs::path> files(m_jobsToHandOver.begin(), m_jobsToHandOver.end());
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
  // Destroyed before the server closes its connections: a client that waits for that may start the next host
  // immediately.
  std::unique_ptr<Presence> m_presence;
  std::vector<fs::path> m_jobsToHandOver;
  bool m_mustCheck = true;  ///< the surroundings may have changed
  bool m_mustSave = false;  ///< the list and the records
  bool m_isEnding = false;
  bool m_isReplaced = false;
};

}  // namespace

Result<void> runHost(const HostSetup& setup, const std::function<void()>& isReady) {
  if (Lifeline::isCut(Lifeline::open(setup.machine))) {
    return Error{.code = Error::Code::NotFound,
                 .message = "the process that created this machine has ended",
                 .file = setup.machine};
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
