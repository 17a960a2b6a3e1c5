#pragma once

#include <memory>
#include <utility>

#include "core/catalogue/Job.h"

namespace mirvel {

/// Owns the list of all known jobs. A scan replaces it as a whole. For the main thread.
class Catalogue {
 public:
  const Jobs& jobs() const { return m_jobs; }
  /// The first job with this URL; null if there is none.
  std::shared_ptr<Job> jobAt(const URL& url) const {
    for (const auto& job : m_jobs) {
      if (job->url.equalTo(url)) return job;
    }
    return nullptr;
  }
  void publish(Jobs jobs) { m_jobs = std::move(jobs); }

 private:
  Jobs m_jobs;
};

}  // namespace mirvel
