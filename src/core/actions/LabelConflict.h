#pragma once

#include "core/catalogue/Job.h"

namespace mirvel {

class Launchd;

/// The job of the catalogue that would stop, or keep this one from running, if this one were loaded under the label:
/// one with the same label, in another file, in the same domain. Agents of everyone also stand against daemons. Null:
/// none does, or this job is disabled.
std::shared_ptr<Job> conflictingJob(const Launchd& job, const std::string& label, const Jobs& catalogue);

/// Whether the job is disabled, and what is loaded under its label is another one of the catalogue.
bool isOtherLoaded(const Job& job, const Jobs& catalogue);

}  // namespace mirvel
