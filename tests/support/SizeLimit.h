#pragma once

#include <sys/resource.h>

#include <csignal>

namespace mirvel::testdata {

/// Fails like a full disk, for the duration of its life: files can't grow beyond a size.
class SizeLimit {
 public:
  explicit SizeLimit(rlim_t size) : m_handler(::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &m_before);
    rlimit limit = m_before;
    limit.rlim_cur = size;
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~SizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &m_before);
    ::signal(SIGXFSZ, m_handler);
  }
  SizeLimit(const SizeLimit&) = delete;
  SizeLimit& operator=(const SizeLimit&) = delete;

 private:
  sighandler_t m_handler;
  rlimit m_before = {};
};

}  // namespace mirvel::testdata
