#pragma once

#include "core/catalogue/Job.h"
#include "ctl/Subcommand.h"

namespace mirvel::ctl {

/// Scans the jobs of the machine as the application does. System jobs are included if its settings or `alsoSystem` say
/// so. Files that can't be read are reported on the error output.
Jobs scan(bool alsoSystem, const Context& context);

/// The launchd jobs with the label. Files that can't be read are ignored.
Jobs jobsWith(const std::string& label, const Context& context);

}  // namespace mirvel::ctl
