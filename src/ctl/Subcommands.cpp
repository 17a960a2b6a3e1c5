#include <algorithm>
#include <array>
#include <ostream>

#include "ctl/Printable.h"
#include "ctl/Subcommand.h"

namespace mirvel::ctl {

namespace {

constexpr std::array<Subcommand, 11> table = {{
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
     "job since when it runs, how its last run ended, and when a timer starts it next. Enabled\n"
     "jobs that mirvel-host hasn't loaded are shown as well. Jobs of root are shown as far as\n"
     "their host publishes them. No host is started.\n"
     "\n"
     "  --json   print an object with host, running, jobs and notLoaded; a job has label, path,\n"
     "           domain (user or root), state (running, stopping, failed or waiting), process,\n"
     "           since, lastRun and nextRun; a run has number, start, end, cause, process, outcome\n"
     "           (exited, signalled, couldNotStart or lost), code, failed and text; times are\n"
     "           seconds since 1970, and null is unknown; a job that isn't loaded has label and\n"
     "           path\n",
     status},
    {"log", "LABEL [--since PERIOD] [--follow] [--json]", "show the log of a job",
     "Shows what one of your jobs has printed, and when it started and ended (marked by an\n"
     "asterisk), with the time of each line. No host is started.\n"
     "\n"
     "  --since PERIOD   show the lines of the last minutes, hours or days, such as 30m, 4h or\n"
     "                   2d; default: 1d\n"
     "  --follow         then show new lines as they come, until interrupted (Ctrl+C)\n"
     "  --json           print an object with number, time, kind and message for each line, and\n"
     "                   one with dropped where lines are missing\n"
     "\n"
     "The exit status is 1 if the log can't be read, or if it's empty because there is no job of\n"
     "yours with the label.\n",
     log},
    {"start", "LABEL", "start a job now",
     "Starts one of your loaded jobs, whatever its schedule. A job that runs already is left\n"
     "alone. Jobs of root can be started in the application.\n"
     "\n"
     "The exit status is 1 if the job isn't loaded or can't be started.\n",
     start},
    {"stop", "LABEL", "stop a job that runs",
     "Ends the current run of one of your loaded jobs and waits for its end. The job stays loaded,\n"
     "and starts again when its schedule or KeepAlive wants it.\n"
     "\n"
     "The exit status is 1 if the job isn't loaded or doesn't end.\n",
     stop},
    {"restart", "LABEL", "stop a job and start it again",
     "Ends the current run of one of your loaded jobs, if it runs, and starts it.\n"
     "\n"
     "The exit status is 1 if the job isn't loaded, doesn't end or can't be started.\n",
     restart},
    {"runs", "[FILE...] [--from TIME] [--days N] [--json] | --past [LABEL...] [--from TIME] [--json]",
     "list the coming or past runs of jobs",
     "Lists when jobs run by their StartCalendarInterval, as in the timeline of the application:\n"
     "the jobs of the given files, or all jobs of this machine. A StartInterval has no fixed\n"
     "times, so its runs aren't listed. Disabled jobs are included.\n"
     "\n"
     "  --from TIME   list the runs after this time, such as 2026-11-21, 2026-11-21T09:00 or\n"
     "                2026-11-21T08:00:00Z; local unless it has Z or an offset; default: now\n"
     "  --days N      list the runs of N times 24 hours, from 1 to 3660; default: 30\n"
     "  --past        list instead when jobs ran, how the runs ended, and which were missed: of the\n"
     "                jobs with the given labels, or of all; default of --from: as far as known\n"
     "  --json        print an array of objects with label, path and time; with --past, with label,\n"
     "                path, missed (the reason, or null) and the members of a run as in status\n"
     "\n"
     "The exit status is 1 if a file can't be read or isn't a job, or if nothing is known of a\n"
     "label; the others are still listed.\n",
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
