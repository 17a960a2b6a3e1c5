#pragma once

#include "core/catalogue/Job.h"

namespace mirvel {

class Launchd;

/// The enabled job in the catalogue that has the same label as `job` would have, and so can't be loaded together with
/// it. Null if there is none, or if `job` is disabled. Compares labels exactly, including case.
///
/// Labels must be unique within a domain. The domain of the user has the user's own agents and the agents for everyone,
/// that of the system has the daemons. Agents for everyone and daemons are compared with each other too.
///
///     a user's agent "a" and an agent for everyone "a" → conflict
///     a user's agent "a" and a daemon "a" → no conflict
std::shared_ptr<Job> conflictingJob(const Launchd& job, const std::string& label, const Jobs& catalogue);

/// Whether the job is disabled, and the job that is loaded under its label is another one in the catalogue.
bool isOtherLoaded(const Job& job, const Jobs& catalogue);

}  // namespace mirvel
