#pragma once

#include <functional>

/// The steps by which a process changes what others see: calls of the system that write, rename, remove, send, start
/// and signal. This program's own definitions of them stand before the system's, count, and then do what they should.
namespace mirvel::steps {

/// What came of a process.
struct Outcome {
  bool isKilled = false;  ///< it came so far
  long taken = 0;         ///< its steps
};

/// A child of this process that dies before one of its steps, unless it ends before.
class Victim {
 public:
  Victim(long number, const std::function<void()>& work);
  ~Victim();
  Victim(const Victim&) = delete;
  Victim& operator=(const Victim&) = delete;

  /// Waits for its end.
  Outcome outcome();

 private:
  struct Shared;

  Shared* m_shared;
  int m_process;
};

}  // namespace mirvel::steps
