#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "core/files/Roots.h"
#include "core/ports/LoginItems.h"
#include "core/process/Commands.h"
#include "core/process/ProcessRunner.h"

namespace mirvel::agent {

/// The switch of the agent on this platform; null if it has neither launchd nor autostart, or if there is no agent in
/// the folder of the helper programs. `program` is the path of this program, which the agent opens; `machine` the
/// folder of another machine, to which the roots belong. `roots` and `runner` must outlive the switch.
std::unique_ptr<AgentSwitch> agentSwitchOfThisMachine(const Roots& roots, ProcessRunner& runner,
                                                      const Commands& commands, const std::filesystem::path& helpers,
                                                      const std::filesystem::path& program,
                                                      const std::optional<std::filesystem::path>& machine);

}  // namespace mirvel::agent
