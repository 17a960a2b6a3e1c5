#pragma once

#include <thread>

#include "core/process/FileDescriptor.h"
#include "helpers/jobhost/Cancellation.h"
#include "helpers/process/Signals.h"

namespace mirvel::ctl {

/// Cancels work on SIGINT (Ctrl+C) and SIGTERM, instead of ending the process, as long as it exists.
class Interruption {
 public:
  /// The cancellation must outlive this object. It is called on a thread of its own.
  explicit Interruption(Cancellation& cancellation);
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

 private:
  Signals m_signals;
  Pipe m_end;
  std::thread m_thread;
};

}  // namespace mirvel::ctl
