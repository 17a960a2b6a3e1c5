#pragma once

#include <initializer_list>
#include <set>

#include "core/process/FileDescriptor.h"

namespace mirvel {

/// Makes signals available as a descriptor to poll. Only one object may exist in a process at a time.
class Signals {
 public:
  /// Catches these signals until the destructor restores their default action. If the process has no descriptors left,
  /// nothing is caught and `isGood` returns false.
  explicit Signals(std::set<int> numbers);
  Signals(std::initializer_list<int> numbers) : Signals(std::set<int>(numbers)) {}
  ~Signals();
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;

  bool isGood() const { return static_cast<bool>(m_pipe); }
  /// Readable when a signal has arrived. To be polled, not read.
  int descriptor() const { return m_pipe.read.number(); }
  /// Returns the signals that have arrived since the last call, without waiting. If many have arrived, SIGCHLD may be
  /// included although it hasn't; so look for ended children, but expect none.
  std::set<int> take();

 private:
  Pipe m_pipe;
  std::set<int> m_numbers;
};

}  // namespace mirvel
