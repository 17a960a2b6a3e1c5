#pragma once

#include <memory>
#include <string>

#include "core/files/Roots.h"
#include "core/ports/LoginItems.h"
#include "core/process/Commands.h"
#include "core/process/Environment.h"
#include "core/process/ProcessRunner.h"

namespace mirvel {

/// Creates the login items of the platform that the program was built for. The runner must outlive them; `locale` is
/// the user's.
std::unique_ptr<LoginItems> loginItemsOfThisMachine(const Roots& roots, const Environment& environment,
                                                    ProcessRunner& runner, const Commands& commands,
                                                    const std::string& locale);

}  // namespace mirvel
