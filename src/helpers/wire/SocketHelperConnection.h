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
#include "helpers/wire/Frame.h"

namespace mirvel::wire {

/// A connection over a stream socket. A thread of its own receives, and sends what the socket doesn't accept at once,
/// so no call blocks.
///
/// A peer that hangs up or breaks the rules is disconnected: all pending requests fail, and so does every later one.
/// The rules are those of `FrameReader`, and that each answer and event belongs to a pending request. There is no
/// time-out: a request stays pending until it is answered, cancelled, or the connection ends. While `mostEvents` events
/// wait for the main thread, nothing more is received.
class SocketHelperConnection final : public HelperConnection {
 public:
  /// The queue must outlive the connection. `ended` is called once, on any thread, when the socket has been closed.
  SocketHelperConnection(FileDescriptor socket, MainQueue& queue, std::function<void()> ended = {});
  ~SocketHelperConnection() override;

  Id run(const propertylist::Dictionary& request, Reply reply, Failure failure, Event event = {}) override;
  void cancel(Id request) override;
  bool hasFailed() const override;
  void invalidate() override;

 private:
  class PendingRequests;
  /// Bytes that haven't been sent. They are erased when all of them have been.
  struct Unsent {
    std::mutex mutex;  ///< also guards the descriptor while it is used for sending or closed
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
  Unsent m_unsent;
  std::atomic<std::size_t> m_waitingEvents = 0;  ///< events posted to the main thread that haven't been delivered
  std::shared_ptr<PendingRequests> m_requests;   ///< for the main thread
  std::weak_ptr<PendingRequests> m_listeners;    ///< copied by the thread into the tasks that it posts
  std::thread m_thread;                          // last, because it uses all other members
};

}  // namespace mirvel::wire
