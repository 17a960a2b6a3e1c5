#include "core/session/Selection.h"

#include "core/catalogue/Launchd.h"

namespace mirvel {

std::shared_ptr<Launchd> Selection::launchd() const {
  return std::dynamic_pointer_cast<Launchd>(m_job);
}

void Selection::select(std::shared_ptr<Job> job) {
  replace(std::move(job));
  m_changed.post();
}

}  // namespace mirvel
