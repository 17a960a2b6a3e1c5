#include "helpers/host/JobRunner.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <utility>

#include "core/process/ProcessStatus.h"
#include "core/text/Bytes.h"
#include "helpers/host/JobReports.h"

namespace mirvel::host {

namespace {

/// How a child ended; none if it is running. The child stays a zombie (WNOWAIT): until it is collected, the system
/// can't reuse its process ID, which is that of its group as well, so that signalling the group stays safe.
std::optional<RunEnd> endOf(pid_t child) {
  siginfo_t info{};
  int found = -1;
  do {
    found = ::waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT);
  } while (found != 0 && errno == EINTR);
  if (found != 0) return RunEnd{.how = RunEnd::How::Lost};  // ECHILD
  if (info.si_pid == 0) return std::nullopt;
  const bool hasExited = info.si_code == CLD_EXITED;
  return RunEnd{.how = hasExited ? RunEnd::How::Exited : RunEnd::How::Signalled, .code = info.si_status};
}

/// The end as the rules of `KeepAlive` see it: what couldn't be started, or whose exit status isn't known, has failed.
ProcessEnd processEnd(const RunEnd& end) {
  const int code = static_cast<int>(end.code);
  if (end.how == RunEnd::How::Exited) return {.code = code};
  if (end.how == RunEnd::How::Signalled) return {.signal = code};
  return {.code = startFailureCode};
}

/// Never `NotFound`, which means that the job isn't loaded.
Error errorOf(const StartFailure& failure) {
  const bool isShortage = failure.obstacle == StartObstacle::Resources;
  return {.code = isShortage ? Error::Code::LimitExceeded : Error::Code::Io,
          .message = failure.text(),
          .file = failure.subject,
          .systemCode = failure.systemCode};
}

}  // namespace

JobRunner::JobRunner(HostedJob job, std::filesystem::path file, ProcessPlan plan, const Shared& shared, Purpose purpose)
    : m_job(std::move(job)),
      m_file(std::move(file)),
      m_plan(std::move(plan)),
      m_shared(shared),
      m_purpose(purpose),
      m_history(shared.reports, label(), purpose == Purpose::Test),
      m_output(label(), shared.capture) {}

JobRunner::~JobRunner() {
  if (m_process.failure) m_shared.loop.forget(m_process.failure.number());
}

HostedJobStatus JobRunner::status(const HostTime& now) const {
  HostedJobStatus status{.label = label(), .path = m_file, .nextRun = m_job.nextRun(now)};
  if (m_process.id > 0 && !m_job.isClearing()) status.process = m_process.id;
  if (const auto& end = m_job.lastEnd()) {
    status.lastEnd = m_startFailure ? m_startFailure->text() : end->text();
    if (!m_startFailure) status.lastCode = end->code;
    if (!m_startFailure) status.lastSignal = end->signal;
  }
  return status;
}

void JobRunner::load(const HostTime& now) {
  const auto last = m_history.resume();
  if (last && last->report.path == m_file.string()) m_published = stateIn(last->report);
  const bool wasLoaded = last && last->report.isLoaded && m_purpose == Purpose::Job;
  m_job.load(now, wasLoaded ? std::optional(last->time) : std::nullopt);
}

void JobRunner::unload(const HostTime& now) {
  inheritFromTest(now);
  m_job.unload(now);
}

void JobRunner::inheritFromTest(const HostTime& now) {
  if (m_purpose != Purpose::Test || m_job.isUnloaded()) return;
  m_run.isLeaderAlone = false;
  const auto left = std::exchange(m_left, std::nullopt);
  if (!left) return;
  m_inherited.push_back(*left);
  m_job.foundRunning(now);
}

void JobRunner::quit(const HostTime& now) {
  inheritFromTest(now);
  m_isKept = m_isKept || !m_job.isUnloaded();
  m_job.unload(now, longestStop);
}

JobRunner::State JobRunner::stateIn(const JobReport& report) {
  return {.isLoaded = report.isLoaded,
          .isStopping = report.isStopping,
          .process = report.process,
          .processStart = report.processStart,
          .nextRun = report.nextRun};
}

JobRunner::State JobRunner::state(const HostTime& now) const {
  State state{.isLoaded = m_isKept || !m_job.isUnloaded(), .isStopping = m_job.isStopping()};
  if (m_process.id > 0 && m_job.isRunning() && !m_job.isClearing()) {
    state.process = m_process.id;
    state.processStart = m_run.start;
  }
  const auto nextRun = state.isLoaded ? m_job.nextRun(now) : std::nullopt;
  if (nextRun) state.nextRun = static_cast<double>(nextRun->time_since_epoch().count());
  return state;
}

// The next run of an interval varies a little with the speed of the clock.
bool JobRunner::mustPublish(State state) const {
  if (m_history.hasNews() || !m_published) return true;
  const auto& known = m_published->nextRun;
  const bool isSameRun = state.nextRun && known && std::abs(*state.nextRun - *known) < 2;
  if (isSameRun) state.nextRun = known;
  return state != *m_published;
}

// A failure only costs the report; `JobReports` notes it for the log.
void JobRunner::publish(const HostTime& now, bool again) {
  if (m_purpose == Purpose::Remains) return;
  m_history.addMissed(m_job.takeMissed());
  const State current = state(now);
  if (!again && !mustPublish(current)) return;
  m_published = current;
  (void)m_history.publish({.label = label(),
                           .path = m_file.string(),
                           .isLoaded = current.isLoaded,
                           .isTest = m_purpose == Purpose::Test,
                           .process = current.process,
                           .processStart = current.processStart,
                           .isStopping = current.isStopping,
                           .nextRun = current.nextRun});
}

void JobRunner::inherit(const JobRun& run) {
  m_job.foundRunning(currentTime());
  m_history.prolongLost(run.leader, currentTime().wall);
  m_inherited.push_back(run);
  log("stopping a run that was left by a job host that was killed");
}

bool JobRunner::followDecisions(const HostTime& now) {
  using Order = HostedJob::Order;
  for (;;) {
    switch (m_job.decide(now)) {
      case Order::Wait:
        publish(now);
        return true;
      case Order::Start:
        start(now);
        break;
      case Order::Terminate:
        log(m_job.isClearing() ? "stopping its remaining processes (SIGTERM)" : "stopping it (SIGTERM)");
        signal(SIGTERM);
        break;
      case Order::Kill:
        log("not ended in time: killing it (SIGKILL)");
        signal(SIGKILL);
        break;
      case Order::Forget:
        if (m_purpose == Purpose::Test) m_shared.reports.remove(label(), true);
        if (m_purpose == Purpose::Job) publish(now);
        return false;
    }
  }
}

void JobRunner::start(const HostTime& now) {
  m_run = {.token = makeUuid(), .isLeaderAlone = m_job.rules().abandonProcessGroup};
  m_plan.environment.insert_or_assign(tokenVariable, m_run.token);
  recordRun();  // before the start: if the host is killed right after it, the next host finds the process by its token
  m_history.begin(m_purpose == Purpose::Test ? RunCause::Test : m_job.cause(), currentTime().wall);
  m_attempt = {.number = m_attempt.number + 1};
  m_startFailure.reset();
  m_output.begin(m_plan);
  auto process = JobProcess::start(m_plan, m_shared.environment);
  if (!process) return startFailed(process.error(), now);
  m_job.started(now);
  m_process = *std::move(process);
  m_run.leader = m_process.id;
  m_history.setProcess(m_process.id);
  m_shared.loop.watch(m_process.failure.number(), POLLIN, [this](short) { takeStartFailure(); });
  if (const auto status = ProcessStatus::of(m_process.id)) m_run.start = status->start;
  recordRun();
  log("started");
  m_output.readFrom(std::move(m_process.output));
}

void JobRunner::startFailed(const Error& why, const HostTime& now) {
  (void)m_output.end();
  m_shared.records.remove(m_run);
  log("can't be started: " + why.text());
  m_startFailure = StartFailure::of(why, m_plan);
  m_attempt.isSettled = true;
  m_attempt.failure = errorOf(*m_startFailure);
  m_history.finish(m_startFailure->end(), currentTime().wall);
  if (why.code == Error::Code::LimitExceeded) return m_job.startFailed(now);  // there may be room for it later
  noteFirstRun();
  m_job.started(now);
  m_job.ended({.code = startFailureCode}, now);
}

// Called as soon as the program runs or is known not to run. A failed attempt is settled when its process has ended:
// until then, the job couldn't be started again.
void JobRunner::takeStartFailure() {
  if (!m_process.failure) return;
  m_startFailure = m_process.startFailure(m_plan);
  m_shared.loop.forget(m_process.failure.number());
  m_process.failure.reset();
  m_attempt.isSettled = !m_startFailure;
  if (m_startFailure) m_attempt.failure = errorOf(*m_startFailure);
}

void JobRunner::noteFirstRun() {
  if (!m_firstRun) m_firstRun = *m_history.last();
}

Result<void> JobRunner::saveRecord(const JobRun& run) const {
  RunRecord record{.label = label(), .file = m_file, .run = run};
  if (m_purpose == Purpose::Test) record.run.isLeaderAlone = false;  // the next host ends all that is left of it
  return m_shared.records.write(record);
}

// A failure is only logged: jobs run even if the disk is full.
void JobRunner::recordRun() {
  const auto saved = saveRecord(m_run);
  if (!saved) log("can't record its run: " + saved.error().text());
}

Result<void> JobRunner::saveRecords() const {
  std::vector<JobRun> runs = m_inherited;
  if (m_process.id > 0) runs.push_back(m_run);
  for (const JobRun& run : runs) {
    if (auto saved = saveRecord(run); !saved) return saved;
  }
  return {};
}

std::vector<pid_t> JobRunner::processes() const {
  std::vector<pid_t> result;
  if (m_process.id > 0) result = processesOf(m_run, reach());
  for (const JobRun& run : m_inherited) {
    const auto found = processesOf(run, Reach::Everything);
    result.insert(result.end(), found.begin(), found.end());
  }
  return result;
}

void JobRunner::signal(int number) const {
  if (m_process.id > 0) signalRun(m_run, reach(), number);
  for (const JobRun& run : m_inherited) signalRun(run, Reach::Everything, number);
}

Error JobRunner::stillRunning() const {
  std::string list;
  for (const pid_t process : processes()) list += (list.empty() ? "" : ", ") + std::to_string(process);
  return {.code = Error::Code::StillRunning,
          .message = label() + " was asked to end and is still running" + (list.empty() ? "" : ", as process " + list)};
}

bool JobRunner::collect() {
  if (m_process.id == 0 || m_job.isClearing()) return false;
  const auto end = endOf(m_process.id);
  if (end) finishProcess(*end);
  return end.has_value();
}

void JobRunner::finishProcess(const RunEnd& end) {
  m_output.finish();
  takeStartFailure();
  m_attempt.isSettled = true;
  RunEnd report = m_startFailure ? m_startFailure->end() : end;
  report.isStopped = !m_startFailure && m_job.isStopping();
  report.isTimedOut = report.isStopped && m_job.isKilled();
  m_history.finish(report, currentTime().wall);
  noteFirstRun();
  const bool isLost = report.how == RunEnd::How::Lost;
  log(m_startFailure ? m_startFailure->text() : isLost ? "ended; its exit status isn't known" : processEnd(end).text());
  const bool isOver = processes().empty();
  m_job.ended(processEnd(report), currentTime(), isOver ? HostedJob::Left::Nothing : HostedJob::Left::Others);
  if (isOver) finishRun();
}

// The leader is collected last: until then, its process ID can't be reused for another process or group.
void JobRunner::finishRun() {
  if (m_process.id > 0) {
    ::waitpid(m_process.id, nullptr, 0);
    keepOrRemoveRecord();
    m_output.finish();
    if (auto pipe = m_output.end()) m_shared.discarded.add(std::move(pipe));
    m_process = {};
  }
  for (const JobRun& run : m_inherited) m_shared.records.remove(run);
  m_inherited.clear();
}

void JobRunner::keepOrRemoveRecord() {
  JobRun run = m_run;
  run.isLeaderAlone = false;
  const bool isKept = m_purpose == Purpose::Test && !m_job.isUnloaded() && !processesOf(run, Reach::Everything).empty();
  isKept ? (void)m_left.emplace(std::move(run)) : m_shared.records.remove(m_run);
}

void JobRunner::checkRemains() {
  if (!m_job.isClearing()) return;
  if (!processes().empty()) {
    if (m_job.isKilled()) signal(SIGKILL);  // for processes that were forked while the others were killed
    return;
  }
  finishRun();
  m_job.cleared();
}

// Jobs run even if the disk is full.
void JobRunner::log(const std::string& text) const {
  (void)m_shared.log.addEvent(label(), text);
}

}  // namespace mirvel::host
