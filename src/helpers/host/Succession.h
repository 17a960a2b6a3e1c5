#pragma once

#include <functional>
#include <memory>

#include "core/base/Result.h"
#include "helpers/host/Daemon.h"
#include "helpers/host/Presence.h"

namespace mirvel::host {

/// Whether the folder that stands for a machine was removed.
bool isMachineGone(const HostSetup& setup);

/// Takes the place of a host of another session: at once if that session is gone, else when its host ends, for which it
/// waits as long as its own session is open. `isReady` is called before that. Null: there is a host, or shall be none.
Result<std::unique_ptr<Presence>> succeed(const HostSetup& setup, const std::function<void()>& isReady);

}  // namespace mirvel::host
