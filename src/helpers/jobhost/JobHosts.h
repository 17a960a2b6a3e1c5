#pragma once

#include <functional>
#include <memory>

#include "core/support/ProcessRunner.h"
#include "helpers/jobhost/JobHost.h"

namespace mirvel {

/// Makes the host for a machine that brings none of its own.
using JobHostFactory = std::function<std::unique_ptr<JobHost>()>;

/// What runs jobs on this machine for the user: launchd where its tool is, and otherwise what the factory makes. The
/// runner must outlive the host.
std::unique_ptr<JobHost> makeJobHost(const std::string& launchctl, unsigned user, ProcessRunner& runner,
                                     const JobHostFactory& otherwise);

/// Stands in where nothing runs jobs: files can be changed, and every load says why nothing comes of it.
std::unique_ptr<JobHost> makeNoHost();

}  // namespace mirvel
