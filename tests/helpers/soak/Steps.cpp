#include "helpers/soak/Steps.h"

#include <dlfcn.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <new>
#include <stdexcept>

// The C library declares functions that aren't cancellation points noexcept, and a definition has to match.
#ifdef __GLIBC__
#define MIRVEL_QUIETLY noexcept
#else
#define MIRVEL_QUIETLY
#endif

namespace mirvel::steps {

struct Victim::Shared {
  std::atomic<long> taken = 0;
  std::atomic<bool> isKilled = false;
};

namespace {

struct Sentence {
  std::atomic<pid_t> process = 0;  // not inherited by the children of the victim
  long number = 0;
  std::atomic<long>* taken = nullptr;
  std::atomic<bool>* isKilled = nullptr;
};

Sentence sentence;

/// The definition of the C library.
template <typename Function>
Function next(Function /*like*/, const char* name) {
  return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

void step() {
  if (sentence.process == 0 || sentence.process != ::getpid()) return;
  if (++*sentence.taken != sentence.number) return;
  *sentence.isKilled = true;
  static const auto real = next(&::kill, "kill");
  real(::getpid(), SIGKILL);
}

}  // namespace

Victim::Victim(long number, const std::function<void()>& work) {
  void* const room = ::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (room == MAP_FAILED) throw std::runtime_error("no memory to share");
  m_shared = new (room) Shared;
  m_process = ::fork();
  if (m_process < 0) throw std::runtime_error("no process");
  if (m_process > 0) return;
  sentence.number = number;
  sentence.taken = &m_shared->taken;
  sentence.isKilled = &m_shared->isKilled;
  sentence.process = ::getpid();
  work();
  ::_exit(0);
}

Victim::~Victim() {
  if (m_process > 0) {
    ::kill(m_process, SIGKILL);
    ::waitpid(m_process, nullptr, 0);
  }
  ::munmap(m_shared, sizeof(Shared));
}

Outcome Victim::outcome() {
  if (m_process > 0) ::waitpid(m_process, nullptr, 0);
  m_process = 0;
  return {.isKilled = m_shared->isKilled, .taken = m_shared->taken};
}

}  // namespace mirvel::steps

using mirvel::steps::next;
using mirvel::steps::step;

#define MIRVEL_STEP(result, name, quietly, parameters, arguments) \
  extern "C" result name parameters quietly {                     \
    step();                                                       \
    static const auto real = next(&::name, #name);                \
    return real arguments;                                        \
  }

MIRVEL_STEP(ssize_t, write, , (int file, const void* bytes, std::size_t count), (file, bytes, count))
MIRVEL_STEP(ssize_t, writev, , (int file, const iovec* parts, int count), (file, parts, count))
MIRVEL_STEP(ssize_t, send, , (int socket, const void* bytes, std::size_t count, int flags),
            (socket, bytes, count, flags))
MIRVEL_STEP(int, fsync, , (int file), (file))
MIRVEL_STEP(int, fchmod, MIRVEL_QUIETLY, (int file, mode_t mode), (file, mode))
MIRVEL_STEP(int, rename, MIRVEL_QUIETLY, (const char* from, const char* to), (from, to))
MIRVEL_STEP(int, renameat, MIRVEL_QUIETLY, (int from, const char* old, int to, const char* name), (from, old, to, name))
#ifdef __GLIBC__
MIRVEL_STEP(int, renameat2, MIRVEL_QUIETLY, (int from, const char* old, int to, const char* name, unsigned flags),
            (from, old, to, name, flags))
#endif
MIRVEL_STEP(int, unlink, MIRVEL_QUIETLY, (const char* path), (path))
MIRVEL_STEP(int, unlinkat, MIRVEL_QUIETLY, (int folder, const char* name, int flags), (folder, name, flags))
MIRVEL_STEP(int, mkdir, MIRVEL_QUIETLY, (const char* path, mode_t mode), (path, mode))
MIRVEL_STEP(int, rmdir, MIRVEL_QUIETLY, (const char* path), (path))
MIRVEL_STEP(int, kill, MIRVEL_QUIETLY, (pid_t process, int number), (process, number))
MIRVEL_STEP(pid_t, fork, MIRVEL_QUIETLY, (), ())
