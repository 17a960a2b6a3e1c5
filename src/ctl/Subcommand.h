#pragma once

#include <functional>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>

#include "core/files/Roots.h"
#include "core/lint/Findings.h"
#include "core/locale/Localize.h"
#include "core/ports/Clock.h"
#include "core/process/Environment.h"
#include "core/process/ProcessRunner.h"

/// The commands of the terminal companion. It only reads; nothing on the machine is changed.
namespace mirvel::ctl {

enum ExitStatus { Success = 0, Failed = 1, Usage = 2 };

/// The machine whose jobs are listed.
struct Machine {
  Roots roots;
  Environment environment;
  ProcessRunner& runner;
  std::function<std::string()> userName;  ///< of the user as people write it
  const Clock& clock;
  std::function<std::string()> timeZone;  ///< its name
};

/// What a command may use of the world.
struct Context {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
  bool isTerminal = false;  ///< of `out`: a person looks at it, and control characters would reach the terminal
  bool hasColour = false;   ///< of `out`
  const Localize& localize;
  const lint::Surroundings& surroundings;
  const Machine& machine;
};

using Arguments = std::span<const std::string>;

/// A command takes what stands behind its name, and gives the exit status.
struct Command {
  std::string_view name;
  std::string_view synopsis;  ///< what follows the name
  std::string_view summary;   ///< one line
  std::string_view help;      ///< whole lines
  int (*run)(Arguments arguments, const Context& context);
};

/// All commands, in the order of the help.
std::span<const Command> commands();
/// Null: there is none of that name.
const Command* findCommand(std::string_view name);

/// Checks job files.
int lint(Arguments arguments, const Context& context);
/// Shows property lists in words, or as JSON.
int show(Arguments arguments, const Context& context);
/// Lists the jobs of the machine.
int list(Arguments arguments, const Context& context);
/// Tells what the loaded jobs do.
int status(Arguments arguments, const Context& context);
/// Lists the coming runs of jobs.
int runs(Arguments arguments, const Context& context);
/// Writes a property list in its other form.
int convert(Arguments arguments, const Context& context);
/// Tells about the commands.
int help(Arguments arguments, const Context& context);

/// Says how a command is used, after what was wrong; gives `Usage`.
int usageError(std::string_view command, std::string_view problem, const Context& context);

/// The whole program: finds the command by its name.
int run(Arguments arguments, const Context& context);

}  // namespace mirvel::ctl
