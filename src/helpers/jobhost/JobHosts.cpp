#include "helpers/jobhost/JobHosts.h"

#include <unistd.h>

#include "core/process/Commands.h"
#include "helpers/jobhost/EmbeddedHost.h"
#include "helpers/jobhost/LaunchctlHost.h"

namespace mirvel {

std::unique_ptr<JobHost> jobHostOfThisMachine(const std::optional<std::filesystem::path>& root,
                                              const Environment& environment, ProcessRunner& runner) {
  const std::filesystem::path embedded = executablePath().parent_path() / "mirvel-host";
  if (root) return std::make_unique<EmbeddedHost>(EmbeddedHost::below(embedded, *root), runner);
  const std::string launchctl = Commands::forThisMachine(environment).launchctl;
  if (isProgram(launchctl)) {
    return std::make_unique<LaunchctlHost>(
        LaunchctlHost::Setup{.runner = runner, .domain = LaunchctlHost::domainOf(::geteuid()), .launchctl = launchctl});
  }
  return std::make_unique<EmbeddedHost>(EmbeddedHost::ofUser(embedded, Roots::forThisMachine(environment)), runner);
}

}  // namespace mirvel
