#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <set>

#include "core/process/FileDescriptor.h"
#include "helpers/host/PollLoop.h"

namespace mirvel::host {

/// Reads and discards the output of processes that outlive the run of their job (`AbandonProcessGroup`): they would get
/// SIGPIPE if nobody had the pipe open, and block if nobody read it. It is read at intervals, so that a process that
/// prints endlessly isn't expensive. For one thread.
class DiscardedOutputs {
 public:
  /// The loop must outlive this object.
  explicit DiscardedOutputs(PollLoop& loop) : m_loop(loop) {}
  ~DiscardedOutputs();
  DiscardedOutputs(const DiscardedOutputs&) = delete;
  DiscardedOutputs& operator=(const DiscardedOutputs&) = delete;

  /// The pipe must be non-blocking. It is closed once all writers have closed it.
  void add(FileDescriptor pipe);
  /// Reads again from the pipes whose pause is over. Called after each turn of the loop.
  void settle(std::chrono::milliseconds now);
  /// When `settle` has something to do; none if it hasn't.
  std::optional<std::chrono::milliseconds> wakeAt() const { return m_pausedUntil; }

 private:
  void read(int number);

  PollLoop& m_loop;
  std::map<int, FileDescriptor> m_pipes;
  std::set<int> m_paused;  ///< pipes that aren't watched
  std::optional<std::chrono::milliseconds> m_pausedUntil;
};

}  // namespace mirvel::host
