#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "core/ports/HelperConnection.h"
#include "core/ports/MainQueue.h"
#include "core/process/FileDescriptor.h"
#include "helpers/wire/Requests.h"

namespace mirvel::wire {

/// A connection over a stream socket. A thread of its own reads, and sends what the socket doesn't take at once, so
/// that no call blocks. A peer that hangs up or breaks the rules is cut off: all requests that wait fail, and so does
/// every later one. While `mostEvents` events wait for the main thread nothing more is read.
class SocketHelperConnection final : public HelperConnection {
 public:
  /// Takes the socket. The queue must outlive the connection. `ended` is called once, from some thread, when the socket
  /// has been closed.
  SocketHelperConnection(FileDescriptor socket, MainQueue& queue, std::function<void()> ended = {});
  ~SocketHelperConnection() override;

  Id run(const propertylist::Dictionary& request, Reply reply, Failure failure, Event event = {}) override;
  void cancel(Id request) override;
  bool hasFailed() const override { return m_requests->brokenBy().has_value(); }
  void invalidate() override;

 private:
  /// What hasn't been sent yet. It is erased when all of it has been.
  struct Outbox {
    std::mutex mutex;
    std::string bytes;
    std::size_t sent = 0;
    bool isClosed = false;
  };

  enum class Sent { All, Part, Failed };

  void send(const std::string& bytes);
  void work();
  bool exchange(FrameReader& reader);
  bool receive(FrameReader& reader);
  void post(Frame frame);
  Sent flush();
  void wake();
  void close();
  void hangUp();
  void breakOff(Error why);
  void postFailure(Id id, Error why);

  MainQueue& m_queue;
  std::function<void()> m_ended;
  FileDescriptor m_socket;
  Pipe m_waking = Pipe::make();
  Outbox m_outbox;
  std::atomic<std::size_t> m_waitingEvents = 0;  ///< for the main thread
  std::shared_ptr<Requests> m_requests = std::make_shared<Requests>();
  std::weak_ptr<Requests> m_listeners = m_requests;  ///< read by the thread; what it posts holds nothing alive
  std::thread m_thread;                              // last, so that it starts when all else is there
};

}  // namespace mirvel::wire
