#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "core/files/Roots.h"
#include "core/lint/TargetMachine.h"
#include "core/locale/Localize.h"
#include "core/ports/Clock.h"
#include "core/process/Arguments.h"
#include "core/process/Environment.h"
#include "core/process/ProcessRunner.h"
#include "helpers/jobhost/JobHost.h"

/// The subcommands of mirvelctl. They change no file; only `start`, `stop` and `restart` act on anything.
namespace mirvel::ctl {

enum ExitStatus { Success = 0, Failed = 1, Usage = 2 };

/// The machine whose jobs are inspected.
struct Machine {
  Roots roots;
  Environment environment;
  ProcessRunner& runner;
  std::function<std::string()> userName;  ///< full name of the user
  const Clock& clock;
  std::function<std::string()> timeZone;  ///< name of the time zone
  bool isRoots = false;                   ///< this process acts as root, whose host publishes its reports for everybody
  std::function<std::unique_ptr<JobHost>()> jobHost;  ///< makes a connection to the host of the user's jobs
};

/// The environment in which a subcommand runs.
struct Context {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
  bool isTerminal = false;  ///< `out` is a terminal, so it must not receive control characters
  bool hasColour = false;   ///< `out` supports colours
  const Localize& localize;
  const lint::TargetMachine& targetMachine;
  const Machine& machine;
};

/// `run` receives the arguments after the name and returns the exit status.
struct Subcommand {
  std::string_view name;
  std::string_view synopsis;  ///< the arguments in the usage line
  std::string_view summary;   ///< one line, without a full stop
  std::string_view help;      ///< complete lines
  int (*run)(Arguments arguments, const Context& context);
};

/// All subcommands in the order of the help.
std::span<const Subcommand> subcommands();
/// Null if there is no subcommand of this name.
const Subcommand* findSubcommand(std::string_view name);

/// Checks job files.
int lint(Arguments arguments, const Context& context);
/// Describes a property list, or prints it as JSON.
int show(Arguments arguments, const Context& context);
/// Lists the jobs of the machine.
int list(Arguments arguments, const Context& context);
/// Shows the state of the loaded jobs.
int status(Arguments arguments, const Context& context);
/// Shows the log of a job.
int log(Arguments arguments, const Context& context);
/// Starts or stops a job of the user.
int start(Arguments arguments, const Context& context);
int stop(Arguments arguments, const Context& context);
int restart(Arguments arguments, const Context& context);
/// Lists the coming or past runs of jobs.
int runs(Arguments arguments, const Context& context);
/// Converts a property list to XML or binary.
int convert(Arguments arguments, const Context& context);
/// Shows the help for a subcommand, or the list of all.
int help(Arguments arguments, const Context& context);

/// Writes the problem and the usage line to the error output. Returns `Usage`.
int usageError(std::string_view command, std::string_view problem, const Context& context);

/// Runs the program: finds the subcommand and calls it. Returns the exit status.
int run(Arguments arguments, const Context& context);

}  // namespace mirvel::ctl
