#pragma once

#include <memory>

#include "core/base/Signal.h"
#include "core/catalogue/Job.h"

namespace mirvel {

class Launchd;

/// Owns the selected jobs. For the main thread.
class Selection {
 public:
  /// The job whose details are shown; null unless exactly one is selected.
  std::shared_ptr<Job> job() const { return m_jobs.size() == 1 ? m_jobs.front() : nullptr; }
  /// The same job, if it is a launchd job; null otherwise.
  std::shared_ptr<Launchd> launchd() const;
  const Jobs& jobs() const { return m_jobs; }
  /// Selects that job alone; null selects nothing.
  void select(const std::shared_ptr<Job>& job);
  /// Posted after each change of what is selected.
  Signal<>& changed() { return m_changed; }

 private:
  Jobs m_jobs;
  Signal<> m_changed;
};

}  // namespace mirvel
