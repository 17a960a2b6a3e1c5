#pragma once

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

/// A connection over a stream socket. A thread of its own reads the answers and sends what the socket doesn't take at
/// once, so that nothing here waits. A peer that hangs up, or sends anything but one answer to each request, is cut
/// off: what waits fails, and so does every later request.
class SocketHelperConnection final : public HelperConnection {
 public:
  /// Takes the socket. The queue must outlive the connection. `ended` is called once, from some thread, when nothing
  /// more is said over the socket.
  SocketHelperConnection(FileDescriptor socket, MainQueue& queue, std::function<void()> ended = {});
  ~SocketHelperConnection() override;

  void run(const propertylist::Dictionary& request, Reply reply, Failure failure) override;
  void invalidate() override;

 private:
  /// What hasn't been sent yet. A part is erased when all of it has gone.
  struct Outbox {
    std::mutex mutex;
    std::string bytes;
    std::size_t sent = 0;
    bool isClosed = false;
  };

  enum class Sent { All, Part, Failed };

  void work();
  bool exchange(FrameReader& reader);
  bool receive(FrameReader& reader);
  Sent flush();
  void wake();
  void close();
  void hangUp();
  void breakOff(Error why);
  void postFailure(std::int64_t id, Error why);

  MainQueue& m_queue;
  std::function<void()> m_ended;
  FileDescriptor m_socket;
  Pipe m_waking = Pipe::make();
  Outbox m_outbox;
  std::shared_ptr<Requests> m_requests = std::make_shared<Requests>();
  std::weak_ptr<Requests> m_listeners = m_requests;  ///< read by the thread; what it posts holds nothing alive
  std::thread m_thread;                              // last, so that it starts when all else is there
};

}  // namespace mirvel::wire
