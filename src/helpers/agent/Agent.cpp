#include "helpers/agent/Agent.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include "helpers/hostdata/HostPlaces.h"
#include "helpers/hostdata/StoredLog.h"

namespace mirvel::agent {

namespace fs = std::filesystem;

namespace {

constexpr double pauseBeforeScan = 0.5;   // in seconds, after the last change of a burst
constexpr int mostPostponed = 10;         // then a scan happens even if the changes go on
constexpr double pauseBeforeReports = 1;  // a host logs the last output after it has reported the end

}  // namespace

Agent::Agent(const Setup& setup, AgentLock lock, host::PollLoop& loop, PollQueue& queue, Notifier& notifier)
    : m_setup(setup),
      m_lock(std::move(lock)),
      m_loop(loop),
      m_notifier(notifier),
      m_session(setup.environment, setup.sessionRecords),
      m_exceptions(setup.roots.applicationSupport, &m_troubles),
      m_memory(setup.roots.ownAgent() / "known.plist", m_troubles),
      m_embeddedList(setup.runner, setup.launchctl),
      m_inventory(setup.roots, m_embeddedList, setup.console),
      m_announcements(
          {setup.roots, ::geteuid(), setup.localize, m_exceptions, m_memory, m_inventory, setup.console, setup.clock}),
      m_actions({.localize = setup.localize,
                 .exceptions = m_exceptions,
                 .queue = queue,
                 .console = setup.console,
                 .environment = setup.environment,
                 .program = setup.program,
                 .action = setup.action,
                 .tell = [this](const Notice& notice) { tell(notice); }}),
      m_sender({.localize = setup.localize,
                .exceptions = m_exceptions,
                .memory = m_memory,
                .notifier = notifier,
                .queue = queue}),
      m_reports(setup.roots.ownReports(), RunDomain::User, setup.console),
      m_folders(setup.roots, setup.console),
      m_delay(queue) {}

Agent::~Agent() {
  m_troubles.setListener(nullptr);
  for (const int descriptor : {m_signals.descriptor(), m_folders.descriptor(), m_surroundings->descriptor()}) {
    if (descriptor >= 0) m_loop.forget(descriptor);
  }
}

void Agent::begin() {
  m_loop.watch(m_signals.descriptor(), POLLIN, [this](short) { takeSignals(); });
  watchSurroundings();
  if (m_folders.descriptor() >= 0) m_loop.watch(m_folders.descriptor(), POLLIN, [this](short) { takeFolders(); });
  // Deferred, because a trouble may come up while the memory is being written.
  m_troubles.setListener([this](const StoreTrouble& trouble) {
    m_setup.console.log(trouble.error.text());
    m_delay(0, [this, trouble] { tell(noticeOf(trouble, m_setup.localize)); });
  });
  m_changed = {Kind::monitoredKinds.begin(), Kind::monitoredKinds.end()};
  // Later, because whoever has started the agent waits for this function.
  m_delay(0, [this] {
    readReports();
    scan();
  });
  m_notifier.begin({.ready = [this] { m_sender.plan(); },
                    .chosen = [this](const Notification& notification, const std::string& action,
                                     const std::string& token) { m_actions.perform(notification, action, token); }});
}

void Agent::watchSurroundings() {
  for (const fs::path& path :
       {m_setup.roots.ownReports(), AgentLock::file(m_setup.roots), m_setup.machine, m_session.record()}) {
    if (!path.empty()) m_surroundings->add(path);
  }
  if (m_surroundings->descriptor() < 0) return;
  m_loop.watch(m_surroundings->descriptor(), POLLIN, [this](short) { checkSurroundings(); });
}

int Agent::timeout() const {
  constexpr int polling = host::PathWatch::pollingSeconds * 1000;
  return m_folders.isPolling() || m_surroundings->isPolling() ? polling : -1;
}

void Agent::settle() {
  if (m_folders.isPolling()) takeFolders();
  if (m_surroundings->isPolling()) checkSurroundings();
}

void Agent::takeSignals() {
  for (const int number : m_signals.take()) {
    if (number == SIGCHLD) m_actions.collect();
    if (number != SIGCHLD) end();
  }
}

void Agent::end() {
  if (std::exchange(m_shallEnd, true)) return;
  m_sender.stop();
  constexpr double patience = 2;  // in seconds
  m_delay(patience, [this] { m_isLate = true; });
}

void Agent::checkSurroundings() {
  const auto changed = m_surroundings->take();
  std::error_code failure;
  const bool isMachineGone = !m_setup.machine.empty() && !fs::exists(m_setup.machine, failure) && !failure;
  if (isMachineGone || !m_lock.isWhole() || m_session.isOver()) end();
  // An agent that waits for the lock touches it.
  if (changed.contains(AgentLock::file(m_setup.roots)) && m_notifier.isLost()) end();
  if (changed.contains(m_setup.roots.ownReports())) reportsChanged();
}

void Agent::takeFolders() {
  const auto kinds = m_folders.take();
  if (kinds.empty()) return;
  m_changed.insert(kinds.begin(), kinds.end());
  if (m_postponed++ >= mostPostponed) return;  // the last plan stays
  m_delay(pauseBeforeScan, [this, plan = ++m_scans] {
    if (plan == m_scans) scan();
  });
}

void Agent::scan() {
  m_postponed = 0;
  const auto kinds = std::exchange(m_changed, {});
  if (kinds.empty()) return;  // another scan has looked at them
  if (m_announcements.scan(kinds)) scanAgain(kinds, Announcements::secondsUntilNextLook);
  if (const auto added = m_folders.follow(m_memory.jobs); !added.empty()) scanAgain(added, 0);
  m_sender.plan();
}

void Agent::scanAgain(const std::set<Kind::Case>& kinds, double seconds) {
  m_delay(seconds, [this, kinds] {
    m_changed.insert(kinds.begin(), kinds.end());
    scan();
  });
}

void Agent::reportsChanged() {
  m_delay(pauseBeforeReports, [this] { readReports(); });
}

void Agent::readReports() {
  const bool isFirst = m_memory.isNewToRuns();
  std::vector<JobReport> reports;
  const auto take = [&](const RunDelivery& delivery) {
    reports.insert(reports.end(), delivery.reports.begin(), delivery.reports.end());
    for (const std::string& label : delivery.removed) m_memory.failures.forget(label);
  };
  while (m_reports.read(take)) continue;
  m_announcements.takeRuns(reports, isFirst, [this](const auto& event) { return lastLineOf(event); });
  m_sender.plan();
}

std::string Agent::lastLineOf(const FailureSeries::Event& event) const {
  using namespace std::chrono;
  const auto start = sys_time<microseconds>(duration_cast<microseconds>(duration<double>(event.run.start)));
  const LogRange range{.since = start};
  const StoredLog log(HostPlaces::of(m_setup.roots).log(), event.label);
  const auto lines = linesOfBlocks(log.blocks(range), range).lines;
  const auto end = event.run.endTime.value_or(event.run.start) + 60;  // later lines belong to other runs
  const auto last = std::find_if(lines.rbegin(), lines.rend(), [&](const messages::LogLine& line) {
    return line.kind == messages::LogLine::Kind::Output && line.seconds <= end &&
           line.message.find_first_not_of(" \t\r") != std::string::npos;
  });
  return last != lines.rend() ? last->message : std::string();
}

void Agent::tell(const Notice& notice) {
  m_memory.add(notice);
  m_sender.plan();
}

}  // namespace mirvel::agent
