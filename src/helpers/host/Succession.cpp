#include "helpers/host/Succession.h"

#include <poll.h>

#include <array>
#include <chrono>
#include <system_error>
#include <thread>

#include "core/files/RegularFile.h"
#include "helpers/host/PathWatch.h"
#include "helpers/hostdata/HostClient.h"

namespace mirvel::host {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

hostdata::BeginSession requestOf(const HostSetup& setup, const Session& session) {
  const auto variables = session.variables();
  return {.environment = {variables.begin(), variables.end()},
          .folders = {setup.jobFolders.begin(), setup.jobFolders.end()}};
}

/// Waits until the host hangs up. False: it has said that none shall follow, or this session is over before.
bool outlives(const Session& session, const FileDescriptor& host) {
  const auto watch = makePathWatch();
  if (!session.record().empty()) watch->add(session.record());
  const int pause = watch->descriptor() < 0 ? PathWatch::pollingSeconds * 1000 : -1;
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

}  // namespace

bool isMachineGone(const HostSetup& setup) {
  std::error_code failure;
  return !setup.machine.empty() && !fs::exists(setup.machine, failure) && !failure;
}

Result<std::unique_ptr<Presence>> succeed(const HostSetup& setup, const std::function<void()>& isReady) {
  using Clock = std::chrono::steady_clock;
  const Session session(setup.environment, setup.sessionRecords);
  constexpr auto patience = longestQuit + longestAnswer;
  for (auto until = Clock::now() + patience; Clock::now() < until;) {
    if (isMachineGone(setup)) return std::unique_ptr<Presence>();
    auto claimed = Presence::claim(setup.places);
    if (!claimed || *claimed) return claimed;
    const auto host = HostClient(setup.places.socket).connect();
    const auto answer = host ? HostClient::askAt(*host, requestOf(setup, session), patience)
                             : Result<hostdata::BeginSession::Answer>(host.error());
    if (answer && !answer->staysOpen) return std::unique_ptr<Presence>();
    if (answer) {
      isReady();
      if (!outlives(session, *host)) return std::unique_ptr<Presence>();
      until = Clock::now() + patience;
    } else if (!HostClient::isHangUp(answer.error()) && !HostClient::isNoHost(answer.error())) {
      return answer.error();
    } else {
      std::this_thread::sleep_for(10ms);  // one that was killed may hold the lock for a moment, in a job on its way
    }
  }
  return Error{.code = Error::Code::Io, .message = "the job host of another session doesn't end"};
}

}  // namespace mirvel::host
