// What the host does with the processes of its jobs.

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "core/support/RegularFile.h"
#include "helpers/host/Host.h"

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
        addToLog(entry, {"is asked to end"});
        ::kill(entry.process.id, SIGTERM);
        break;
      case Order::Kill:
        addToLog(entry, {"doesn't end, and is killed"});
        ::kill(-entry.process.id, SIGKILL);
        break;
      case Order::Forget:
        return forget(entry);
    }
  }
}

void Host::start(Entry& entry, const HostTime& now) {
  auto process = JobProcess::start(entry.plan, m_settings.environment);
  entry.job.started(now);
  if (!process) {
    addToLog(entry.job.rules().label, entry.job.rules().label + ": can't be started: " + process.error().text());
    entry.job.ended({.code = startFailureCode});
    return;
  }
  entry.process = *std::move(process);
  entry.output = {};
  addToLog(entry, {"started"});
  if (!entry.process.output) return;
  m_loop.watch(entry.process.output.number(), POLLIN, [this, &entry](short) { takeOutput(entry); });
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
    if (entry->process.id == 0) continue;
    const auto end = endOf(entry->process.id);
    if (end) endProcess(*entry, *end);
  }
}

void Host::endProcess(Entry& entry, const ProcessEnd& end) {
  const pid_t child = entry.process.id;
  if (!entry.job.rules().abandonProcessGroup) ::kill(-child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  // What is left in the pipe; one that its heirs go on filling is given up.
  constexpr int mostReads = 4;
  for (int i = 0; i < mostReads && entry.process.output; ++i) takeOutput(entry);
  addToLog(entry, entry.output.finish());
  const auto failure = entry.process.startFailure();
  addToLog(entry, {failure ? *failure : end.text()});
  leaveOutput(entry);
  entry.process = {};
  entry.job.ended(end);
  m_hasNews = true;
}

/// A process that a job leaves behind may go on printing: that is read, and dropped, so that it doesn't die of it.
void Host::leaveOutput(Entry& entry) {
  if (!entry.process.output) return;
  const int number = entry.process.output.number();
  m_loop.forget(number);
  if (!entry.job.rules().abandonProcessGroup) return;
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
