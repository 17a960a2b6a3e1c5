#include <algorithm>
#include <array>
#include <ostream>

#include "ctl/Printable.h"
#include "ctl/Subcommand.h"

namespace mirvel::ctl {

namespace {

constexpr std::array<Subcommand, 7> table = {{
    {"lint", "[--json] FILE...", "check job files",
     "Reports for each file what launchd would refuse, ignore, or interpret differently from what\n"
     "was probably meant, with the line if it is known.\n"
     "\n"
     "  --json   print an array of objects with file, ok and findings\n"
     "\n"
     "The exit status is 0 if there are no errors (warnings don't count), and 1 otherwise.\n",
     lint},
    {"show", "[--json] FILE", "describe a job or any other property list",
     "Describes the label, the command and the times of a job, and prints every key of the file.\n"
     "A property list that isn't a job is printed without a description.\n"
     "\n"
     "  --json   print an object with ok, format and value, and with job if the file is one\n"
     "\n"
     "The exit status is 1 if the file can't be read or isn't a property list.\n",
     show},
    {"list", "[--system] [--json]", "list the jobs of this machine",
     "Lists every job that the application shows, grouped by kind: agents and daemons of launchd,\n"
     "login items, startup items and helper tools. Job files that can't be read are reported on\n"
     "the standard error and left out.\n"
     "\n"
     "  --system   include the jobs of the system, whatever the settings of the application\n"
     "  --json     print an array of objects with kind, name, summary, path, editable and disabled\n",
     list},
    {"status", "[--json]", "show the state of the loaded jobs",
     "Shows which host runs the jobs of this machine, launchd or mirvel-host, and for each loaded\n"
     "job its process, how it last ended, and when a timer starts it next. Enabled jobs that\n"
     "mirvel-host hasn't loaded are shown as well.\n"
     "\n"
     "  --json   print an object with host, running, jobs and notLoaded; a job has label, path,\n"
     "           process, lastExit (code, signal and text) and nextRun (seconds since 1970), null\n"
     "           where unknown; a job that isn't loaded has label and path\n",
     status},
    {"runs", "[FILE...] [--from TIME] [--days N] [--json]", "list the coming runs of jobs",
     "Lists when jobs run by their StartCalendarInterval, as in the timeline of the application:\n"
     "the jobs of the given files, or all jobs of this machine. A StartInterval has no fixed\n"
     "times, so its runs aren't listed. Disabled jobs are included.\n"
     "\n"
     "  --from TIME   list the runs after this time, such as 2026-11-21, 2026-11-21T09:00 or\n"
     "                2026-11-21T08:00:00Z; local unless it has Z or an offset; default: now\n"
     "  --days N      list the runs of N times 24 hours, from 1 to 3660; default: 30\n"
     "  --json        print an array of objects with label, path and time\n"
     "\n"
     "The exit status is 1 if a file can't be read or isn't a job; the others are still listed.\n",
     runs},
    {"convert", "FILE --to xml|binary", "convert a property list",
     "Writes the property list to the standard output in the given format. The file isn't changed.\n"
     "\n"
     "  --to xml|binary   the format\n",
     convert},
    {"help", "[COMMAND]", "show the help for a command", "Shows how a command is used, or lists all commands.\n", help},
}};

}  // namespace

std::span<const Subcommand> subcommands() {
  return table;
}

const Subcommand* findSubcommand(std::string_view name) {
  const auto* const found =
      std::find_if(table.begin(), table.end(), [&](const Subcommand& command) { return command.name == name; });
  return found == table.end() ? nullptr : found;
}

int usageError(std::string_view command, std::string_view problem, const Context& context) {
  const Subcommand* const known = findSubcommand(command);
  context.err << "mirvelctl " << command << ": " << printable(problem) << '\n';
  if (known) context.err << "usage: mirvelctl " << command << ' ' << known->synopsis << '\n';
  return Usage;
}

}  // namespace mirvel::ctl
