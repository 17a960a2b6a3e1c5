#include "helpers/wire/Outbox.h"

#include <sys/socket.h>

#include <utility>

#include "helpers/wire/FrameSocket.h"

namespace mirvel::wire {

Outbox::Outbox(int socket, std::function<void(std::int64_t id)> sending)
    : m_socket(socket), m_sending(std::move(sending)), m_thread([this] { work(); }) {}

Outbox::~Outbox() {
  (void)finish();  // the owner that is interested in a failure has called `finish`
}

void Outbox::addAnswer(Frame frame) {
  const std::lock_guard lock(m_mutex);
  add(std::move(frame));
}

bool Outbox::addEvent(Frame frame) {
  const std::lock_guard lock(m_mutex);
  if (m_events >= mostEvents) return false;
  ++m_events;
  add(std::move(frame));
  return true;
}

void Outbox::add(Frame frame) {
  m_frames.push_back(std::move(frame));
  m_changed.notify_one();
}

Result<void> Outbox::finish() {
  {
    const std::lock_guard lock(m_mutex);
    m_isFinishing = true;
    m_changed.notify_one();
  }
  if (m_thread.joinable()) m_thread.join();
  return m_result;
}

void Outbox::work() {
  while (const auto frame = next()) {
    if (frame->kind == Frame::Kind::Message) m_sending(frame->id);
    send(*frame);
  }
}

std::optional<Frame> Outbox::next() {
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [this] { return m_isFinishing || !m_frames.empty(); });
  if (m_frames.empty()) return std::nullopt;
  Frame frame = std::move(m_frames.front());
  m_frames.pop_front();
  if (frame.kind == Frame::Kind::Event) --m_events;
  return frame;
}

/// Drops the remaining frames after a failure, because the peer has gone.
void Outbox::send(const Frame& frame) {
  if (!m_result) return;
  m_result = sendFrame(m_socket, frame);
  if (!m_result) ::shutdown(m_socket, SHUT_RDWR);
}

}  // namespace mirvel::wire
