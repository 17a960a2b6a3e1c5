#include "helpers/agent/PlatformAgentSwitch.h"

#include <unistd.h>

#include "helpers/agent/AutostartAgent.h"
#include "helpers/agent/LaunchdAgent.h"

namespace mirvel::agent {

namespace fs = std::filesystem;

std::unique_ptr<AgentSwitch> agentSwitchOfThisMachine(const Roots& roots, ProcessRunner& runner,
                                                      const Commands& commands, const fs::path& helpers,
                                                      const fs::path& program, const std::optional<fs::path>& machine) {
  const fs::path agent = helpers / "mirvel-agent";
  if (!isProgram(agent)) return nullptr;
  if (!machine && isProgram(commands.launchctl)) {
    return std::make_unique<LaunchdAgent>(LaunchdAgent::Setup{.roots = roots,
                                                              .runner = runner,
                                                              .launchctl = commands.launchctl,
                                                              .user = ::getuid(),
                                                              .agent = agent,
                                                              .program = program});
  }
  if (roots.ownAutostart.empty()) return nullptr;
  return std::make_unique<AutostartAgent>(AutostartAgent::Setup{
      .roots = roots, .runner = runner, .agent = agent, .program = program, .machine = machine.value_or(fs::path())});
}

}  // namespace mirvel::agent
