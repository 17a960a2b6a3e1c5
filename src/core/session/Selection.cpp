#include "core/session/Selection.h"

#include "core/catalogue/Launchd.h"

namespace mirvel {

std::shared_ptr<Launchd> Selection::launchd() const {
  return std::dynamic_pointer_cast<Launchd>(job());
}

void Selection::select(const std::shared_ptr<Job>& job) {
  Jobs jobs;
  if (job) jobs.push_back(job);
  if (jobs == m_jobs) return;
  m_jobs = std::move(jobs);
  m_changed.post();
}

}  // namespace mirvel
