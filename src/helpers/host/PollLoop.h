#pragma once

#include <poll.h>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace mirvel::host {

/// Waits for events on descriptors and calls their handlers. For one thread.
class PollLoop {
 public:
  using Handler = std::function<void(short events)>;

  /// Calls the handler with the events that occurred whenever there are any of `events`, as in poll(2), or an error. A
  /// descriptor has one handler; another call replaces it. Handlers may call any of these functions.
  void watch(int descriptor, short events, Handler handler);
  /// Changes the events to wait for; ignored for a descriptor that isn't watched.
  void change(int descriptor, short events);
  /// Stops to watch a descriptor. Must be called before it is closed, since its number may be reused.
  void forget(int descriptor);

  /// Waits once for events and calls the handlers; returns without calling any after that many milliseconds (-1: never)
  /// or when a signal interrupts it.
  void turn(int milliseconds);

 private:
  struct Watch {
    short events;
    std::shared_ptr<Handler> handler;
  };

  std::map<int, Watch> m_watches;
  std::vector<pollfd> m_waiting;
};

}  // namespace mirvel::host
