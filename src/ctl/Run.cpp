#include <algorithm>
#include <ostream>

#include "ctl/Command.h"
#include "ctl/Printable.h"

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
  if (arguments.empty()) return noCommand("there is no command", context);
  const std::string& name = arguments.front();
  if (name == "--help" || name == "-h") return help({}, context);
  if (name == "--version") {
    context.out << "mirvelctl " MIRVEL_VERSION "\n";
    return Success;
  }
  const Command* const command = findCommand(name);
  if (!command) return noCommand("there is no command " + name, context);
  if (asksForHelp(arguments.subspan(1))) return help(arguments.first(1), context);
  return command->run(arguments.subspan(1), context);
}

}  // namespace

int run(Arguments arguments, const Context& context) {
  const int status = runCommand(arguments, context);
  if (context.out.flush()) return status;
  context.err << "mirvelctl: can't write the output\n";
  return Failed;
}

}  // namespace mirvel::ctl
