#include "core/session/Selection.h"

#include "core/catalogue/Launchd.h"

namespace mirvel {

std::shared_ptr<Launchd> Selection::launchd() const {
  return std::dynamic_pointer_cast<Launchd>(job());
}

void Selection::select(const std::shared_ptr<Job>& job) {
  replace(job);
  m_changed.post();
}

void Selection::replace(const std::shared_ptr<Job>& job) {
  m_jobs.clear();
  if (job) m_jobs.push_back(job);
}

}  // namespace mirvel
