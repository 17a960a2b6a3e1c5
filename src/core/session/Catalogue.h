#pragma once

#include <memory>
#include <utility>

#include "core/base/Signal.h"
#include "core/catalogue/Job.h"

namespace mirvel {

/// Owns the list of all known jobs. A scan replaces it as a whole, so pointers to jobs outlive it only if they are
/// shared. For the main thread.
class Catalogue {
 public:
  /// In the order of their kinds, and within a kind by name.
  const Jobs& jobs() const { return m_jobs; }
  /// The first job with this URL; null if there is none.
  std::shared_ptr<Job> jobAt(const URL& url) const {
    for (const auto& job : m_jobs) {
      if (job->url.equalTo(url)) return job;
    }
    return nullptr;
  }
  /// Replaces all jobs. Returns the old ones, so that the caller can destroy them on another thread: with thousands of
  /// jobs, that takes long enough to be noticed.
  Jobs publish(Jobs jobs) {
    m_willChange.post(m_jobs, jobs);
    return std::exchange(m_jobs, std::move(jobs));
  }
  /// Posted before the jobs are replaced, with the old and the new ones.
  Signal<Jobs, Jobs>& willChange() { return m_willChange; }

 private:
  Jobs m_jobs;
  Signal<Jobs, Jobs> m_willChange;
};

}  // namespace mirvel
