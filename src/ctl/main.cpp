#include <unistd.h>

#include <iostream>
#include <vector>

#include "core/process/Environment.h"
#include "core/process/SystemProcessRunner.h"
#include "core/process/UserEntry.h"
#include "core/schedule/ZoneStretches.h"
#include "ctl/Subcommand.h"
#include "helpers/jobhost/JobHosts.h"

namespace {

using namespace mirvel;

std::string valueOf(const Environment& environment, const std::string& name) {
  const auto found = environment.find(name);
  return found == environment.end() ? std::string() : found->second;
}

/// NO_COLOR is defined at no-color.org.
bool wantsColour(const Environment& environment) {
  return valueOf(environment, "NO_COLOR").empty() && valueOf(environment, "TERM") != "dumb";
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
  const Environment environment = processEnvironment();
  const Localize localize;
  const auto targetMachine = lint::TargetMachine::thisMachine(valueOf(environment, "HOME"));
  SystemProcessRunner runner(environment);
  const SystemClock clock;
  const ctl::Machine machine{.roots = Roots::forThisMachine(environment),
                             .environment = environment,
                             .runner = runner,
                             .userName = fullUserName,
                             .clock = clock,
                             .timeZone = zoneOfThisMachine,
                             .isRoots = ::geteuid() == 0,
                             .jobHost = [&] { return jobHostOfThisMachine({}, environment, runner); }};
  const bool isTerminal = ::isatty(STDOUT_FILENO) == 1;
  std::ios::sync_with_stdio(false);
  return ctl::run(arguments, {.in = std::cin,
                              .out = std::cout,
                              .err = std::cerr,
                              .isTerminal = isTerminal,
                              .hasColour = isTerminal && wantsColour(environment),
                              .localize = localize,
                              .targetMachine = targetMachine,
                              .machine = machine});
}
