#pragma once

#include "core/catalogue/Job.h"
#include "ctl/Command.h"

namespace mirvel::ctl {

/// The jobs of the machine, as the application would show them; those of the system too if that is set in it, or asked
/// for here. Files that can't be read are told on the error output.
Jobs scan(bool alsoSystem, const Context& context);

}  // namespace mirvel::ctl
