#pragma once

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <random>

namespace mirvel::testdata {

/// How often a random test is repeated: `soaking` times if MIRVEL_SOAK is set.
inline int tries(int usual, int soaking) {
  return std::getenv("MIRVEL_SOAK") ? soaking : usual;
}

/// Kills child processes at random moments.
class Killer {
 public:
  /// Lets a child repeat the work, with the number of the repetition, and kills it within 4 ms.
  void killWithin(const std::function<void(int)>& work) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      for (int i = 0;; ++i) work(i);
    }
    const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(m_random() % 4000);
    while (std::chrono::steady_clock::now() < end) {
    }
    ::kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
  }

 private:
  std::mt19937 m_random{20261121};
};

}  // namespace mirvel::testdata
