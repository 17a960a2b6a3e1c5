// What the host does with the processes of its jobs.

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "core/files/RegularFile.h"
#include "core/text/Bytes.h"
#include "helpers/host/Host.h"
#include "helpers/process/ProcessStatus.h"

namespace mirvel::host {

namespace {

/// How the child ended, if it has. It isn't collected yet, so that its number, which is that of its group too, can't
/// be anybody else's.
std::optional<ProcessEnd> endOf(pid_t child) {
  siginfo_t info{};
  int found = -1;
  do {
    found = ::waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT);
  } while (found != 0 && errno == EINTR);
  if (found != 0) return ProcessEnd{.code = startFailureCode};  // nobody knows any more
  if (info.si_pid == 0) return std::nullopt;
  if (info.si_code == CLD_EXITED) return ProcessEnd{.code = info.si_status};
  return ProcessEnd{.signal = info.si_status};
}

/// Up to 64 KiB of what there is. False at the end of the stream.
bool readOutput(int descriptor, std::array<char, 65536>& buffer, std::string_view& bytes) {
  const ssize_t count = readUninterrupted(descriptor, buffer.data(), buffer.size());
  bytes = {buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0};
  return count > 0 || (count < 0 && errno == EAGAIN);
}

}  // namespace

void Host::followOrders(Entry& entry, const HostTime& now) {
  using Order = HostedJob::Order;
  for (;;) {
    switch (entry.job.decide(now)) {
      case Order::Wait:
        return;
      case Order::Start:
        start(entry, now);
        break;
      case Order::Terminate:
        addToLog(entry, {entry.job.isClearing() ? "what it has left running is asked to end" : "is asked to end"});
        signal(entry, SIGTERM);
        break;
      case Order::Kill:
        addToLog(entry, {"doesn't end, and is killed"});
        signal(entry, SIGKILL);
        break;
      case Order::Forget:
        return forget(entry);
    }
  }
}

void Host::start(Entry& entry, const HostTime& now) {
  entry.run = {.mark = makeUuid(), .isLeaderAlone = entry.job.rules().abandonProcessGroup};
  entry.plan.environment.insert_or_assign(markVariable, entry.run.mark);
  noteNewRun(entry);
  auto process = JobProcess::start(entry.plan, m_settings.environment);
  if (!process) {
    m_runNotes.remove(entry.run);
    const std::string& label = entry.job.rules().label;
    addToLog(label, label + ": can't be started: " + process.error().text());
    // Without room for one more process now, there may be some later.
    if (process.error().code == Error::Code::LimitExceeded) return entry.job.startFailed(now);
    entry.job.started(now);
    return entry.job.ended({.code = startFailureCode}, now);
  }
  entry.job.started(now);
  entry.process = *std::move(process);
  entry.run.leader = entry.process.id;
  if (const auto status = ProcessStatus::of(entry.process.id)) entry.run.start = status->start;
  noteNewRun(entry);
  entry.output = {};
  addToLog(entry, {"started"});
  if (!entry.process.output) return;
  m_loop.watch(entry.process.output.number(), POLLIN, [this, &entry](short) { takeOutput(entry); });
}

/// With a full disk the jobs run all the same.
void Host::noteNewRun(const Entry& entry) {
  const std::string& label = entry.job.rules().label;
  const auto noted = m_runNotes.write({.label = label, .file = entry.file, .run = entry.run});
  if (!noted) addToLog(label, label + ": can't be noted as running: " + noted.error().text());
}

/// All that there is of its run, and of those that earlier hosts have left.
Result<void> Host::noteRun(const Entry& entry) const {
  std::vector<JobRun> runs = entry.inherited;
  if (entry.process.id > 0) runs.push_back(entry.run);
  for (const JobRun& run : runs) {
    const auto noted = m_runNotes.write({.label = entry.job.rules().label, .file = entry.file, .run = run});
    if (!noted) return noted;
  }
  return {};
}

/// When a job ends by itself, its group ends with it; when it is stopped, so does everything that it has started.
std::vector<pid_t> Host::leftOf(const Entry& entry) {
  std::vector<pid_t> result;
  if (entry.process.id > 0) result = processesOf(entry.run, entry.job.isUnloaded() ? Reach::Everything : Reach::Group);
  for (const JobRun& run : entry.inherited) {
    const auto found = processesOf(run, Reach::Everything);
    result.insert(result.end(), found.begin(), found.end());
  }
  return result;
}

void Host::signal(const Entry& entry, int number) {
  if (entry.process.id > 0) {
    signalRun(entry.run, entry.job.isUnloaded() ? Reach::Everything : Reach::Group, number);
  }
  for (const JobRun& run : entry.inherited) signalRun(run, Reach::Everything, number);
}

void Host::takeOutput(Entry& entry) {
  std::array<char, 65536> buffer;
  std::string_view bytes;
  const int descriptor = entry.process.output.number();
  if (readOutput(descriptor, buffer, bytes)) return addToLog(entry, entry.output.add(bytes, currentTime().running));
  m_loop.forget(descriptor);
  entry.process.output.reset();
}

void Host::collect() {
  for (const auto& [label, entry] : m_jobs) {
    if (entry->process.id == 0 || entry->job.isClearing()) continue;
    const auto end = endOf(entry->process.id);
    if (end) endProcess(*entry, *end);
  }
}

void Host::endProcess(Entry& entry, const ProcessEnd& end) {
  // What is left in the pipe; one that its heirs go on filling is given up.
  constexpr int mostReads = 4;
  for (int i = 0; i < mostReads && entry.process.output; ++i) takeOutput(entry);
  addToLog(entry, entry.output.finish());
  const auto failure = entry.process.startFailure();
  addToLog(entry, {failure ? *failure : end.text()});
  m_hasNews = true;
  const bool isOver = leftOf(entry).empty();
  entry.job.ended(end, currentTime(), isOver ? HostedJob::Left::Nothing : HostedJob::Left::Others);
  if (isOver) finish(entry);
}

/// The first process is collected last: until then its number, which is that of its group too, can't be anybody else's.
void Host::finish(Entry& entry) {
  if (entry.process.id > 0) {
    ::waitpid(entry.process.id, nullptr, 0);
    m_runNotes.remove(entry.run);
    leaveOutput(entry);
    entry.process = {};
  }
  for (const JobRun& run : entry.inherited) m_runNotes.remove(run);
  entry.inherited.clear();
}

/// Looks whether what an ended process has left running is gone.
void Host::clear(Entry& entry) {
  if (!entry.job.isClearing()) return;
  if (!leftOf(entry).empty()) {
    if (entry.job.isKilled()) signal(entry, SIGKILL);  // one that was begun while the others were killed
    return;
  }
  finish(entry);
  entry.job.cleared();
}

/// A process that a job leaves behind may go on printing: that is read, and dropped, so that it doesn't die of it.
void Host::leaveOutput(Entry& entry) {
  if (!entry.process.output) return;
  const int number = entry.process.output.number();
  m_loop.forget(number);
  m_leftOutputs.insert_or_assign(number, std::move(entry.process.output));
  m_loop.watch(number, POLLIN, [this, number](short) {
    std::array<char, 65536> buffer;
    std::string_view bytes;
    if (readOutput(number, buffer, bytes)) return;
    m_loop.forget(number);
    m_leftOutputs.erase(number);
  });
}

}  // namespace mirvel::host
