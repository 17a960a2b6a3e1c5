#include <algorithm>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>

#include "core/process/Arguments.h"
#include "core/process/Commands.h"
#include "core/process/SystemProcessRunner.h"
#include "helpers/agent/Agent.h"
#include "helpers/agent/OsascriptNotifier.h"
#include "helpers/process/CleanState.h"
#include "helpers/process/Detachment.h"
#include "helpers/process/RunProgram.h"
#ifdef MIRVEL_DBUS
#include "helpers/agent/DBusNotifier.h"
#endif

namespace {

using namespace mirvel;
namespace fs = std::filesystem;

constexpr const char* usage =
    "usage: mirvel-agent [--detach] [--login] [--program FILE] [--root DIR]\n\n"
    "Tells the user about added, changed and removed background jobs, and about jobs that fail. Each user has one "
    "agent.\n\n"
    "  --detach        return as soon as the agent watches, and leave it running\n"
    "  --login         a session of the user begins: if there is an agent, take its place when it ends\n"
    "  --program FILE  the program that shows jobs, in place of the one that is installed beside the agent\n"
    "  --root DIR      use the folders below DIR in place of those of the machine\n";

struct Options {
  bool detach = false;
  bool waits = false;
  fs::path program = {};
  fs::path root = {};  ///< empty: the folders of the machine
};

std::optional<Options> readOptions(Arguments arguments) {
  const auto parsed = parseArguments(arguments, {{"--detach"}, {"--login"}, {"--program", true}, {"--root", true}});
  if (!parsed || !parsed->operands.empty()) return std::nullopt;
  Options options{.detach = parsed->has("--detach"), .waits = parsed->has("--login")};
  const auto root = parsed->value("--root"), program = parsed->value("--program");
  if ((root && root->empty()) || (program && program->empty())) return std::nullopt;
  if (root) options.root = fs::absolute(*root);
  if (program) options.program = fs::absolute(*program);
  return options;
}

/// The installed folder, as seen from this program, or the one in the build folder.
fs::path installedOrBuilt(const char* fromProgram, const char* built) {
  const fs::path installed = executablePath().parent_path() / fromProgram;
  std::error_code failure;
  return fs::is_directory(installed, failure) ? installed.lexically_normal() : fs::path(built);
}

fs::path programFor(const Options& options, const Environment& environment) {
  if (!options.program.empty()) return options.program;
  const fs::path installed = executablePath().parent_path() / MIRVEL_BIN_DIR / "mirvel";
  return isProgram(installed) ? installed.lexically_normal()
                              : fs::path(findProgram("mirvel", environment).value_or("mirvel"));
}

wire::HelperProgram actionFor(const Options& options, const Environment& environment) {
  wire::HelperProgram action{.path = executablePath().parent_path() / "mirvel-action", .environment = environment};
  if (!options.root.empty()) action.arguments = {"--root", options.root};
  return action;
}

#ifdef MIRVEL_DBUS
using PlatformNotifier = agent::DBusNotifier;

PlatformNotifier makeNotifier(host::PollLoop& loop, agent::PollQueue& queue, Console& console,
                              const Environment& environment, ProcessRunner&) {
  return PlatformNotifier({.loop = loop, .queue = queue, .console = console, .environment = environment});
}

void settle(PlatformNotifier& notifier) {
  notifier.settle();
}

int timeoutOf(const PlatformNotifier& notifier) {
  return notifier.timeout();
}
#else
using PlatformNotifier = agent::OsascriptNotifier;

PlatformNotifier makeNotifier(host::PollLoop&, agent::PollQueue& queue, Console&, const Environment& environment,
                              ProcessRunner& runner) {
  return PlatformNotifier(Commands::forThisMachine(environment).osascript, runner, queue);
}

void settle(PlatformNotifier&) {}

int timeoutOf(const PlatformNotifier&) {
  return -1;
}
#endif

/// The shortest of these times, in milliseconds, of which -1 means without limit.
int shortest(std::initializer_list<int> timeouts) {
  int result = -1;
  for (const int timeout : timeouts) {
    if (timeout >= 0) result = result < 0 ? timeout : std::min(result, timeout);
  }
  return result;
}

void serve(const Options& options, const Roots& roots, const Environment& environment, agent::AgentLock lock,
           Detachment& detachment) {
  const std::string locale = Localize::currentLocale();
  const Localize localize(locale, installedOrBuilt(MIRVEL_LOCALE_DIR, MIRVEL_BUILD_LOCALE_DIR),
                          Localize::timeLocale(locale, environment));
  SystemProcessRunner runner(environment);
  StandardConsole console;
  const SystemClock clock;
  host::PollLoop loop;
  agent::PollQueue queue(loop);
  PlatformNotifier notifier = makeNotifier(loop, queue, console, environment, runner);
  const agent::Agent::Setup setup{
      .roots = roots,
      .environment = environment,
      .localize = localize,
      .runner = runner,
      .console = console,
      .clock = clock,
      .machine = options.root,
      .sessionRecords = ("/" / options.root) / fs::path(host::Session::usualRecords).relative_path(),
      .launchctl = Commands::forThisMachine(environment).launchctl,
      .program = programFor(options, environment),
      .action = actionFor(options, environment)};
  agent::Agent watcher(setup, std::move(lock), loop, queue, notifier);
  watcher.begin();
  detachment.complete();
  while (!watcher.shallEnd()) {
    queue.runDue();
    settle(notifier);
    loop.turn(shortest({queue.timeout(), timeoutOf(notifier), watcher.timeout()}));
    watcher.settle();
  }
}

int run(const Options& options, const Environment& environment) {
  // Below a folder, the agent belongs to a demo or test and stays in its control group, to be ended with it.
  resetProcessState(options.root.empty() ? ControlGroup::Leave : ControlGroup::Keep);
  Detachment detachment;
  if (options.detach && !detachment.fork()) return detachment.waitUntilReady();
  const Roots roots = options.root.empty() ? Roots::forThisMachine(environment) : Roots::below(options.root);
  auto lock = agent::AgentLock::take(roots, agent::AgentLock::Wait::No);
  if (lock && !*lock && options.waits) {
    detachment.complete();  // whoever has started this doesn't wait
    lock = agent::AgentLock::take(roots, agent::AgentLock::Wait::Yes);
  }
  if (!lock) std::cerr << "mirvel-agent: " << lock.error().text() << '\n';
  if (!lock) return 1;
  if (*lock) serve(options, roots, environment, **std::move(lock), detachment);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  return runProgram(argc, argv, usage, readOptions, run);
}
