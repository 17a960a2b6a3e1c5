#include <ostream>

#include "core/process/Arguments.h"
#include "ctl/Subcommand.h"

namespace mirvel::ctl {

namespace {

void writeHelp(const Subcommand& command, const Context& context) {
  context.out << "usage: mirvelctl " << command.name << ' ' << command.synopsis << "\n\n" << command.help;
}

void writeOverview(const Context& context) {
  context.out << "usage: mirvelctl COMMAND [ARGUMENT...]\n\nInspects the jobs of this machine, job files and other "
                 "property lists.\n\n";
  constexpr std::size_t widest = 10;
  for (const Subcommand& command : subcommands()) {
    context.out << "  " << command.name << std::string(widest - command.name.size(), ' ') << command.summary << '\n';
  }
  context.out
      << "\n  --help, --version\n\nFILE can be - for the standard input. Run `mirvelctl help COMMAND` for details.\n";
}

}  // namespace

int help(Arguments arguments, const Context& context) {
  const auto parsed = parseArguments(arguments, {});
  if (!parsed) return usageError("help", parsed.error().message, context);
  if (parsed->operands.size() > 1) return usageError("help", "expected one command", context);
  if (parsed->operands.empty()) {
    writeOverview(context);
    return Success;
  }
  const Subcommand* const command = findSubcommand(parsed->operands.front());
  if (!command) return usageError("help", "unknown command " + parsed->operands.front(), context);
  writeHelp(*command, context);
  return Success;
}

}  // namespace mirvel::ctl
