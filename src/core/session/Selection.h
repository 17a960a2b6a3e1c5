#pragma once

#include <memory>

#include "core/base/Signal.h"
#include "core/catalogue/Job.h"

namespace mirvel {

class Launchd;

/// Owns the selection: the jobs to which commands apply. For the main thread.
class Selection {
 public:
  /// The selected job, whose details are shown; null unless exactly one is selected.
  std::shared_ptr<Job> job() const { return m_jobs.size() == 1 ? m_jobs.front() : nullptr; }
  /// The same job, if it is a launchd job; null otherwise.
  std::shared_ptr<Launchd> launchd() const;
  /// All selected jobs; empty if none is.
  const Jobs& jobs() const { return m_jobs; }
  /// Selects this job only; null clears the selection. Posts `changed` even if the job is already selected, since the
  /// details may have been cleared meanwhile.
  void select(const std::shared_ptr<Job>& job);
  /// Replaces the selected job by the object that a newer scan has created for the same file. Nothing is posted, since
  /// the selection is still the same.
  void replace(const std::shared_ptr<Job>& job);
  /// Posted after each call of `select`.
  Signal<>& changed() { return m_changed; }

 private:
  Jobs m_jobs;
  Signal<> m_changed;
};

}  // namespace mirvel
