#pragma once

#include "core/process/Arguments.h"
#include "ctl/Subcommand.h"

namespace mirvel::ctl {

/// `runs --past`: lists the runs that the hosts have reported, of the labels in the operands or of all. Returns the
/// exit status.
int pastRuns(const ParsedArguments& arguments, const Context& context);

}  // namespace mirvel::ctl
