#include "core/actions/LabelConflict.h"

#include <algorithm>

#include "core/catalogue/Launchd.h"

namespace mirvel {

namespace {

/// A user's own agent and a daemon are in different domains. An agent for everyone is in conflict with both.
bool shareADomain(Kind a, Kind b) {
  return a.isDaemon() == b.isDaemon() || a.isAgentOfEveryone() || b.isAgentOfEveryone();
}

bool isLoadedAs(const std::string& label, const Job& job) {
  return job.kind.canBeLoaded() && job.name == label && !job.isDisabled();
}

}  // namespace

std::shared_ptr<Job> conflictingJob(const Launchd& job, const std::string& label, const Jobs& catalogue) {
  if (job.isDisabled()) return nullptr;
  const auto conflicts = [&](const std::shared_ptr<Job>& other) {
    const bool isItself = !job.isNewFile && other->url.equalTo(job.url);
    return !isItself && isLoadedAs(label, *other) && shareADomain(job.kind, other->kind);
  };
  const auto found = std::find_if(catalogue.begin(), catalogue.end(), conflicts);
  return found == catalogue.end() ? nullptr : *found;
}

bool isOtherLoaded(const Job& job, const Jobs& catalogue) {
  return job.isDisabled() && std::any_of(catalogue.begin(), catalogue.end(), [&job](const auto& other) {
           return !other->url.equalTo(job.url) && isLoadedAs(job.name, *other) && shareADomain(job.kind, other->kind);
         });
}

}  // namespace mirvel
