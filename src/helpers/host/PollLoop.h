#pragma once

#include <poll.h>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace mirvel::host {

/// Waits for descriptors, and calls whoever watches them. For one thread.
class PollLoop {
 public:
  using Handler = std::function<void(short events)>;

  /// `events` as in poll(2). A descriptor is watched by one handler at a time; a handler may watch and forget any.
  void watch(int descriptor, short events, Handler handler);
  void change(int descriptor, short events);
  /// Before the descriptor is closed.
  void forget(int descriptor);

  /// Waits until something happens or that many milliseconds have passed (-1: however long), and tells the handlers.
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
