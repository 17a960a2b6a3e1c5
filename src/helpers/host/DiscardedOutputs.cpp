#include "helpers/host/DiscardedOutputs.h"

#include <poll.h>

#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

#include "core/files/RegularFile.h"
#include "helpers/host/HostTime.h"
#include "helpers/host/JobOutput.h"

namespace mirvel::host {

namespace {

/// Reads up to 64 KiB of what is available. False at the end of the stream.
bool readPipe(int descriptor, std::array<char, 65536>& buffer, std::string_view& bytes) {
  const ssize_t count = readUninterrupted(descriptor, buffer.data(), buffer.size());
  bytes = {buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0};
  return count > 0 || (count < 0 && errno == EAGAIN);
}

}  // namespace

DiscardedOutputs::~DiscardedOutputs() {
  for (const auto& [number, pipe] : m_pipes) m_loop.forget(number);
}

void DiscardedOutputs::add(FileDescriptor pipe) {
  const int number = pipe.number();
  m_pipes.insert_or_assign(number, std::move(pipe));
  m_loop.watch(number, POLLIN, [this, number](short) { read(number); });
}

void DiscardedOutputs::read(int number) {
  std::array<char, 65536> buffer;
  std::string_view bytes;
  std::size_t taken = 0;
  for (int piece = 0; piece < JobOutput::piecesPerTurn; ++piece) {
    if (!readPipe(number, buffer, bytes)) {
      m_loop.forget(number);
      m_pipes.erase(number);
      m_paused.erase(number);
      return;
    }
    if (bytes.empty()) break;
    taken += bytes.size();
  }
  if (taken >= buffer.size()) enlargePipe(number);  // so that the writer can go on during the pause
  m_loop.change(number, 0);
  m_paused.insert(number);
  if (!m_pausedUntil) m_pausedUntil = currentTime().running + JobOutput::dropPause;
}

void DiscardedOutputs::settle(std::chrono::milliseconds now) {
  if (!m_pausedUntil || now < *m_pausedUntil) return;
  m_pausedUntil.reset();
  for (const int number : std::exchange(m_paused, {})) m_loop.change(number, POLLIN);
}

}  // namespace mirvel::host
