#pragma once

#include <functional>

#include "core/support/Environment.h"
#include "core/support/Result.h"
#include "helpers/host/Places.h"

namespace mirvel::host {

/// Runs a host at these places until somebody asks it to end, or a signal does; returns at once if there is one
/// already. `isReady` is called when it can be reached. Fails if it never can.
Result<void> runHost(const Places& places, const Environment& environment, const std::function<void()>& isReady);

}  // namespace mirvel::host
