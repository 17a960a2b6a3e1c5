#pragma once

#include <memory>
#include <string>

#include "core/catalogue/LoginItems.h"
#include "core/support/Commands.h"
#include "core/support/Environment.h"
#include "core/support/ProcessRunner.h"
#include "core/support/Roots.h"

namespace mirvel {

/// The lists of the platform that the program was built for. The runner outlives them; `locale` is the user's.
std::unique_ptr<LoginItems> loginItemsOfThisMachine(const Roots& roots, const Environment& environment,
                                                    ProcessRunner& runner, const Commands& commands,
                                                    const std::string& locale);

}  // namespace mirvel
