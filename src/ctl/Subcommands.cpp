#include <algorithm>
#include <array>
#include <ostream>

#include "ctl/Command.h"
#include "ctl/Printable.h"

namespace mirvel::ctl {

namespace {

constexpr std::array<Command, 7> table = {{
    {"lint", "[--json] FILE...", "check job files",
     "Tells for each file what launchd would refuse, ignore or understand in another way than\n"
     "it was probably meant, with the line where there is one.\n"
     "\n"
     "  --json   an array of objects with file, ok and findings\n"
     "\n"
     "The exit status is 0 if there are no errors (there may be warnings), and 1 if there are.\n",
     lint},
    {"show", "[--json] FILE", "show a job, or any property list, in words",
     "Shows the label, the command and the times of a job, and every key of the file.\n"
     "A property list that isn't a job is shown as it stands.\n"
     "\n"
     "  --json   one object with ok, format and value, and with job if the file is one\n"
     "\n"
     "The exit status is 1 for a file that can't be read or is no property list.\n",
     show},
    {"list", "[--system] [--json]", "list the jobs of this machine",
     "Lists every job that the application shows, by its kind: agents and daemons of launchd,\n"
     "login items, startup items and helper tools. A job file that can't be read is told on the\n"
     "standard error and left out.\n"
     "\n"
     "  --system   the jobs of the system too, whatever is set in the application\n"
     "  --json     an array of objects with kind, name, summary, path, editable and disabled\n",
     list},
    {"status", "[--json]", "tell what the loaded jobs do",
     "Tells which host runs the jobs of this machine, launchd or mirvel-host, and of each loaded\n"
     "job its process, how it ended last, and when a timer starts it next. Enabled jobs that\n"
     "mirvel-host hasn't loaded are told, too.\n"
     "\n"
     "  --json   an object with host, running, jobs and notLoaded; a job has label, path, process,\n"
     "           lastExit (code, signal and text) and nextRun (seconds since 1970), null where\n"
     "           unknown, and one that isn't loaded has label and path\n",
     status},
    {"runs", "[FILE...] [--from TIME] [--days N] [--json]", "list the coming runs of jobs",
     "Lists when the jobs run by their StartCalendarInterval, as the application's timeline shows\n"
     "it: of these files, or of all jobs of this machine. Jobs with a StartInterval have no moments\n"
     "of their own and aren't listed for it. Disabled jobs are listed like others.\n"
     "\n"
     "  --from TIME   the runs after this moment, such as 2026-11-21, 2026-11-21T09:00 or\n"
     "                2026-11-21T08:00:00Z; without Z or an offset it is the local time. Else: now\n"
     "  --days N      up to this many times 24 hours later, 30 if not given, at most 3660\n"
     "  --json        an array of objects with label, path and time\n"
     "\n"
     "The exit status is 1 if a file can't be read or is no job; the others are listed.\n",
     runs},
    {"convert", "FILE --to xml|binary", "write a property list to the standard output",
     "Writes the property list in the form that is asked for. The file itself stays as it is.\n"
     "\n"
     "  --to xml|binary   the form\n",
     convert},
    {"help", "[COMMAND]", "tell about a command", "Tells how a command is used, or which commands there are.\n", help},
}};

}  // namespace

std::span<const Command> commands() {
  return table;
}

const Command* findCommand(std::string_view name) {
  const auto* const found =
      std::find_if(table.begin(), table.end(), [&](const Command& command) { return command.name == name; });
  return found == table.end() ? nullptr : found;
}

int usageError(std::string_view command, std::string_view problem, const Context& context) {
  const Command* const known = findCommand(command);
  context.err << "mirvelctl " << command << ": " << printable(problem) << '\n';
  if (known) context.err << "usage: mirvelctl " << command << ' ' << known->synopsis << '\n';
  return Usage;
}

}  // namespace mirvel::ctl
