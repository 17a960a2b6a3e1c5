#pragma once

#include <initializer_list>
#include <set>

#include "core/process/FileDescriptor.h"

namespace mirvel {

/// Turns signals into something to poll for. One at a time in a process.
class Signals {
 public:
  /// Fails, as `isGood` tells, if the process has no descriptors left.
  explicit Signals(std::set<int> numbers);
  Signals(std::initializer_list<int> numbers) : Signals(std::set<int>(numbers)) {}
  ~Signals();
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;

  bool isGood() const { return static_cast<bool>(m_pipe); }
  /// Can be read when a signal has come.
  int descriptor() const { return m_pipe.read.number(); }
  /// Those that have come since the last call.
  std::set<int> take();

 private:
  Pipe m_pipe;
  std::set<int> m_numbers;
};

}  // namespace mirvel
