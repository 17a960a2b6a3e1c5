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
  /// Selects that job alone; null selects nothing. Posts `changed` even if it is selected already, since its details
  /// may have been cleared meanwhile.
  void select(const std::shared_ptr<Job>& job);
  /// Puts a newer reading of the selected job in its place. The selection is the same, so nothing is posted.
  void replace(const std::shared_ptr<Job>& job);
  /// Posted after each `select`.
  Signal<>& changed() { return m_changed; }

 private:
  Jobs m_jobs;
  Signal<> m_changed;
};

}  // namespace mirvel
