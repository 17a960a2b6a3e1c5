#include "helpers/host/JobOutput.h"

#include <fcntl.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "core/files/RegularFile.h"
#include "helpers/host/HostTime.h"

namespace mirvel::host {

using namespace std::chrono;

namespace {

using Buffer = std::array<char, JobOutput::droppedPieceSize>;

void setEarlier(std::optional<milliseconds>& moment, std::optional<milliseconds> other) {
  if (other) moment = std::min(moment.value_or(*other), *other);
}

}  // namespace

void enlargePipe([[maybe_unused]] int pipe) {
#ifdef F_SETPIPE_SZ
  constexpr int largestPipe = 1 << 20;
  (void)::fcntl(pipe, F_SETPIPE_SZ, largestPipe);
#endif
}

void OutputCapture::settle() {
  if (m_active.empty() && !m_notices.wakeAt()) return;
  const milliseconds now = currentTime().running;
  m_notices.settle(now);
  for (JobOutput* const output : m_active) output->settle(now);
}

std::optional<milliseconds> OutputCapture::wakeAt() const {
  std::optional<milliseconds> earliest = m_notices.wakeAt();
  for (const JobOutput* const output : m_active) setEarlier(earliest, output->wakeAt());
  return earliest;
}

void JobOutput::begin(const ProcessPlan& plan) {
  (void)end();
  m_capture.m_active.insert(this);
  OutputFiles files(plan);
  if (files.isEmpty()) return;
  m_files = std::move(files);
  m_files->begin();
  m_mustPoll = !m_files->watch(m_capture.m_notices, *this);
  filesChanged();  // something may have been appended before the files were watched
}

void JobOutput::readFrom(FileDescriptor pipe) {
  m_pipe = std::move(pipe);
  if (m_pipe) m_capture.m_loop.watch(m_pipe.number(), POLLIN, [this](short) { readPipe(); });
}

void JobOutput::finish() {
  constexpr int mostTurns = 100;  // for output that other processes go on writing
  const milliseconds now = currentTime().running;
  for (int turn = 0; m_pipe && turn < mostTurns && !m_pipePausedUntil; ++turn) {
    pollfd waiting{.fd = m_pipe.number(), .events = POLLIN, .revents = 0};
    if (::poll(&waiting, 1, 0) <= 0) break;
    readPipe();
  }
  if (m_pipe && m_pipePausedUntil) readPipe();
  for (int turn = 0; m_files && turn < mostTurns && readFiles(now); ++turn) continue;
  log(m_pipeLines.finish());
  if (m_files) {
    for (auto& file : m_files->files()) log(file.lines.finish());
  }
  logDropped(m_budget.takeDropped());
}

FileDescriptor JobOutput::end() {
  if (m_pipe) m_capture.m_loop.forget(m_pipe.number());
  m_capture.m_notices.forget(*this);
  m_capture.m_active.erase(this);
  m_files.reset();
  m_filesDueAt.reset();
  m_pipePausedUntil.reset();
  m_mustPoll = false;
  m_pipeLines = {};
  return std::move(m_pipe);
}

// A moment that is set already is that of the next turn, except where the files are read from time to time.
void JobOutput::filesChanged() {
  if (!m_filesDueAt || m_mustPoll) m_filesDueAt = milliseconds(0);
}

void JobOutput::settle(milliseconds now) {
  if (m_pipePausedUntil && now >= *m_pipePausedUntil) {
    m_pipePausedUntil.reset();
    m_capture.m_loop.change(m_pipe.number(), POLLIN);
  }
  if (m_filesDueAt && now >= *m_filesDueAt) readFiles(now);
  logDropped(m_budget.takeDropped(now));
  logPrompts(now);
}

std::optional<milliseconds> JobOutput::wakeAt() const {
  std::optional<milliseconds> earliest = m_pipePausedUntil;
  setEarlier(earliest, m_filesDueAt);
  setEarlier(earliest, m_budget.droppedAt());
  if (!isFollowed()) return earliest;
  if (m_pipeLines.isWithinLine()) setEarlier(earliest, m_pipeReadAt + promptDelay);
  if (!m_files) return earliest;
  for (const auto& file : m_files->files()) {
    if (file.lines.isWithinLine()) setEarlier(earliest, file.readAt + promptDelay);
  }
  return earliest;
}

void JobOutput::readPipe() {
  Buffer buffer;
  const milliseconds now = currentTime().running;
  for (int piece = 0; piece < piecesPerTurn; ++piece) {
    const std::size_t most = m_budget.isExceeded(now) ? droppedPieceSize : pieceSize;
    const ssize_t count = readUninterrupted(m_pipe.number(), buffer.data(), most);
    if (count < 0 && errno == EAGAIN) break;
    if (count <= 0) return closePipe();
    m_pipeReadAt = now;
    take({buffer.data(), static_cast<std::size_t>(count)}, m_pipeLines, now);
  }
  if (m_budget.isExceeded(now)) pausePipe(now);
}

void JobOutput::closePipe() {
  m_capture.m_loop.forget(m_pipe.number());
  m_pipe.reset();
  m_pipePausedUntil.reset();
}

void JobOutput::pausePipe(milliseconds now) {
  enlargePipe(m_pipe.number());  // so that the job can go on during the pause
  m_pipePausedUntil = now + dropPause;
  m_capture.m_loop.change(m_pipe.number(), 0);
}

bool JobOutput::readFiles(milliseconds now) {
  m_filesDueAt.reset();
  const bool hasNew = m_files->update([this](OutputFiles::File& file) { log(file.lines.finish()); });
  if (hasNew) m_mustPoll = !m_files->watch(m_capture.m_notices, *this);
  bool hasMore = false;
  for (auto& file : m_files->files()) hasMore = readFile(file, now) || hasMore;
  if (m_mustPoll) m_filesDueAt = now + pollingPause;
  if (hasMore) m_filesDueAt = m_budget.isExceeded(now) ? now + dropPause : now;
  return hasMore;
}

bool JobOutput::readFile(OutputFiles::File& file, milliseconds now) {
  Buffer buffer;
  for (int piece = 0; piece < piecesPerTurn; ++piece) {
    const bool isDropped = m_budget.isExceeded(now);
    if (const std::uint64_t backlog = isDropped ? file.backlog() : 0; backlog > mostCounted) {
      m_budget.skip(backlog - mostCounted);
      file.offset += backlog - mostCounted;
    }
    const std::size_t count = file.read(buffer.data(), isDropped ? droppedPieceSize : pieceSize);
    if (count == 0) return false;
    file.readAt = now;
    take({buffer.data(), count}, file.lines, now);
  }
  return true;
}

void JobOutput::take(std::string_view bytes, OutputLines& lines, milliseconds now) {
  logDropped(m_budget.takeDropped(now));
  log(m_budget.admit(bytes, now) ? lines.add(bytes) : lines.finish());
}

// Jobs run even if the disk is full.
void JobOutput::log(const std::vector<std::string>& lines) {
  (void)m_capture.m_log.addOutput(m_label, lines);
}

void JobOutput::logDropped(const std::optional<OutputBudget::Dropped>& dropped) {
  if (dropped) (void)m_capture.m_log.addDropped(m_label, dropped->lines, dropped->text());
}

void JobOutput::logPrompts(milliseconds now) {
  if (!isFollowed()) return;
  if (now >= m_pipeReadAt + promptDelay) log(m_pipeLines.finish());
  if (!m_files) return;
  for (auto& file : m_files->files()) {
    if (now >= file.readAt + promptDelay) log(file.lines.finish());
  }
}

}  // namespace mirvel::host
