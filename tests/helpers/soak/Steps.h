#pragma once

#include <cstdlib>
#include <functional>

/// Steps are the system calls by which a process changes what others see: they write, rename, remove, send, fork and
/// signal. This program defines these functions itself; its definitions count the calls and forward them to the C
/// library.
namespace mirvel::steps {

/// How often something random is repeated: `soaking` times if MIRVEL_SOAK is set.
inline int tries(int usual, int soaking) {
  return std::getenv("MIRVEL_SOAK") ? soaking : usual;
}

/// How a process ended.
struct Outcome {
  bool isKilled = false;  ///< it reached the step
  long taken = 0;         ///< the number of its steps
};

/// A child process that is killed before its step with a given number, unless it ends earlier.
class Victim {
 public:
  Victim(long number, const std::function<void()>& work);
  ~Victim();
  Victim(const Victim&) = delete;
  Victim& operator=(const Victim&) = delete;

  /// Waits for the end of the process.
  Outcome outcome();

 private:
  struct Shared;

  Shared* m_shared;
  int m_process;
};

}  // namespace mirvel::steps
