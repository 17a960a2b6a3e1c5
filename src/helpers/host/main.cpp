#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "core/process/Arguments.h"
#include "helpers/host/Daemon.h"
#include "helpers/hostdata/EnabledJobs.h"
#include "helpers/process/CleanState.h"
#include "helpers/process/Detachment.h"
#include "helpers/process/RunProgram.h"

namespace {

using namespace mirvel;

constexpr const char* usage =
    "usage: mirvel-host [--detach] [--login] [--root DIR]\n\n"
    "Runs launchd jobs on machines without launchd: those that a client loads, and those that were loaded when it\n"
    "last ended. Each user has one host.\n\n"
    "  --detach     return as soon as the host can be reached, and leave it running\n"
    "  --login      a session of the user begins: load its enabled jobs, if necessary after another session has ended\n"
    "  --root DIR   use the folders below DIR in place of those of the machine\n";

struct Options {
  bool detach = false;
  bool beginsSession = false;
  std::filesystem::path root = {};  ///< empty: the folders of the machine
};

std::optional<Options> readOptions(Arguments arguments) {
  const auto parsed = parseArguments(arguments, {{"--detach"}, {"--login"}, {"--root", true}});
  if (!parsed || !parsed->operands.empty()) return std::nullopt;
  Options options{.detach = parsed->has("--detach"), .beginsSession = parsed->has("--login")};
  const auto root = parsed->value("--root");
  if (root && root->empty()) return std::nullopt;
  if (root) options.root = std::filesystem::absolute(*root);
  return options;
}

int run(const Options& options, const Environment& environment) {
  // Jobs get the umask of the session, except that their files are never writable by others: `resetProcessState` would
  // replace it. A host below a folder belongs to a demo or test and stays in its control group, to be ended with it.
  const mode_t umaskOfSession = ::umask(022);
  resetProcessState(options.root.empty() ? ControlGroup::Leave : ControlGroup::Keep);
  ::umask(umaskOfSession | 022);
  Detachment detachment;
  if (options.detach && !detachment.fork()) return detachment.waitUntilReady();
  const Roots roots = options.root.empty() ? Roots::forThisMachine(environment) : Roots::below(options.root);
  const bool isRootsOwn = options.root.empty() && ::geteuid() == 0;
  const host::HostSetup setup{
      .places = isRootsOwn ? HostPlaces::ofRoot(roots) : HostPlaces::of(roots),
      .environment = environment,
      .machine = options.root,
      .beginsSession = options.beginsSession,
      .jobFolders = options.beginsSession ? agentFolders(roots) : std::vector<std::filesystem::path>(),
      .sessionRecords = ("/" / options.root) / std::filesystem::path(host::Session::usualRecords).relative_path()};
  const auto ran = host::runHost(setup, [&] { detachment.complete(); });
  if (!ran) std::cerr << "mirvel-host: " << ran.error().text() << '\n';
  return ran ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  return runProgram(argc, argv, usage, readOptions, run);
}
