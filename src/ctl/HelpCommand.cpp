#include <ostream>

#include "core/process/Arguments.h"
#include "ctl/Command.h"

namespace mirvel::ctl {

namespace {

void tellCommand(const Command& command, const Context& context) {
  context.out << "usage: mirvelctl " << command.name << ' ' << command.synopsis << "\n\n" << command.help;
}

void tellAll(const Context& context) {
  context.out
      << "usage: mirvelctl COMMAND [ARGUMENT...]\n\nLists the jobs of this machine, and reads job files and other "
         "property lists.\n\n";
  constexpr std::size_t widest = 10;
  for (const Command& command : commands()) {
    context.out << "  " << command.name << std::string(widest - command.name.size(), ' ') << command.summary << '\n';
  }
  context.out << "\n  --help, --version\n\nA FILE of - is the standard input. `mirvelctl help COMMAND` tells more.\n";
}

}  // namespace

int help(Arguments arguments, const Context& context) {
  const auto parsed = parseArguments(arguments, {});
  if (!parsed) return usageError("help", parsed.error().message, context);
  if (parsed->operands.size() > 1) return usageError("help", "there is more than one command", context);
  if (parsed->operands.empty()) {
    tellAll(context);
    return Success;
  }
  const Command* const command = findCommand(parsed->operands.front());
  if (!command) return usageError("help", "there is no command " + parsed->operands.front(), context);
  tellCommand(*command, context);
  return Success;
}

}  // namespace mirvel::ctl
