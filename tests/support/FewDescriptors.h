#pragma once

#include <fcntl.h>
#include <sys/resource.h>

#include "core/process/FileDescriptor.h"

namespace mirvel::testdata {

/// While it exists, this process can open only so many further files; EMFILE for more.
class FewDescriptors {
 public:
  explicit FewDescriptors(rlim_t further) {
    ::getrlimit(RLIMIT_NOFILE, &m_before);
    const FileDescriptor next(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    rlimit few = m_before;
    few.rlim_cur = static_cast<rlim_t>(next.number()) + further;
    ::setrlimit(RLIMIT_NOFILE, &few);
  }
  ~FewDescriptors() { ::setrlimit(RLIMIT_NOFILE, &m_before); }
  FewDescriptors(const FewDescriptors&) = delete;
  FewDescriptors& operator=(const FewDescriptors&) = delete;

 private:
  rlimit m_before{};
};

}  // namespace mirvel::testdata
