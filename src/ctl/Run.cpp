#include <algorithm>
#include <ostream>

#include "ctl/Printable.h"
#include "ctl/Subcommand.h"

namespace mirvel::ctl {

namespace {

bool asksForHelp(Arguments arguments) {
  const auto end = std::find(arguments.begin(), arguments.end(), "--");
  return std::find_if(arguments.begin(), end,
                      [](const std::string& argument) { return argument == "--help" || argument == "-h"; }) != end;
}

int noCommand(const std::string& problem, const Context& context) {
  context.err << "mirvelctl: " << printable(problem) << "; try mirvelctl --help\n";
  return Usage;
}

int runCommand(Arguments arguments, const Context& context) {
  if (arguments.empty()) return noCommand("no command given", context);
  const std::string& name = arguments.front();
  if (name == "--help" || name == "-h") return help({}, context);
  if (name == "--version") {
    context.out << "mirvelctl " MIRVEL_VERSION "\n";
    return Success;
  }
  const Subcommand* const command = findSubcommand(name);
  if (!command) return noCommand("unknown command " + name, context);
  if (asksForHelp(arguments.subspan(1))) return help(arguments.first(1), context);
  return command->run(arguments.subspan(1), context);
}

}  // namespace

int run(Arguments arguments, const Context& context) {
  const int status = runCommand(arguments, context);
  // A full disk or a closed pipe must not look like success.
  if (context.out.flush()) return status;
  context.err << "mirvelctl: can't write the output\n";
  return Failed;
}

}  // namespace mirvel::ctl
