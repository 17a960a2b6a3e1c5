#pragma once

#include <memory>
#include <utility>

#include "core/base/Signal.h"
#include "core/catalogue/Job.h"

namespace mirvel {

class Launchd;

/// Owns the selection: the job to which commands apply. For the main thread.
class Selection {
 public:
  /// The selected job, whose details are shown; null if there is none.
  std::shared_ptr<Job> job() const { return m_job; }
  /// The same job, if it is a launchd job; null otherwise.
  std::shared_ptr<Launchd> launchd() const;
  /// Selects this job; null clears the selection. Posts `changed` even if the job is already selected, since the
  /// details may have been cleared meanwhile.
  void select(std::shared_ptr<Job> job);
  /// Replaces the selected job by the object that a newer scan has created for the same file. Nothing is posted, since
  /// the selection is still the same.
  void replace(std::shared_ptr<Job> job) { m_job = std::move(job); }
  /// Posted after each call of `select`.
  Signal<>& changed() { return m_changed; }

 private:
  std::shared_ptr<Job> m_job;
  Signal<> m_changed;
};

}  // namespace mirvel
