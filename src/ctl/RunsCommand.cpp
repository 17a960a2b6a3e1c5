#include <algorithm>
#include <chrono>
#include <cmath>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "core/jobfile/Plist.h"
#include "core/process/Arguments.h"
#include "core/schedule/MergedRuns.h"
#include "core/text/Digits.h"
#include "ctl/Input.h"
#include "ctl/IsoTime.h"
#include "ctl/Json.h"
#include "ctl/PastRuns.h"
#include "ctl/Printable.h"
#include "ctl/Scan.h"
#include "ctl/Subcommand.h"

namespace mirvel::ctl {

using namespace std::chrono;

namespace {

struct CalendarJob {
  std::string label;
  std::string path;
  std::vector<jobfile::StartCalendarInterval::Interval> intervals;
};

struct Span {
  std::string zone;
  sys_seconds after;
  sys_seconds end;
};

CalendarJob calendarJob(const jobfile::Plist& job, const std::string& path) {
  const auto& calendar = job.startCalendarInterval;
  return {.label = job.name,
          .path = path,
          .intervals = calendar ? calendar->intervals : std::vector<jobfile::StartCalendarInterval::Interval>()};
}

/// Appends the jobs of all readable files to `jobs`. Returns `Failed` if a file couldn't be read.
int readFiles(const std::vector<std::string>& files, std::vector<CalendarJob>& jobs, const Context& context) {
  int status = Success;
  for (const std::string& file : files) {
    const auto bytes = readInput(file, context);
    const auto job = bytes ? jobfile::Plist::readTolerantly(*bytes) : Result<jobfile::Plist>(bytes.error());
    if (job) {
      jobs.push_back(calendarJob(*job, inputName(file)));
    } else {
      context.err << errorLine(file, job.error()) << '\n';
      status = Failed;
    }
  }
  return status;
}

std::vector<CalendarJob> catalogueJobs(const Context& context) {
  std::vector<CalendarJob> jobs;
  for (const auto& job : scan(false, context)) {
    if (job->record()) jobs.push_back(calendarJob(*job->record(), job->url.text()));
  }
  return jobs;
}

std::vector<OwnedRun> runsOf(const std::vector<CalendarJob>& jobs, const ZoneStretches& zone, const Span& span) {
  std::vector<OwnedRule> rules;
  for (std::size_t owner = 0; owner < jobs.size(); ++owner) {
    for (const auto& interval : jobs[owner].intervals) {
      rules.push_back({CalendarRule::asShown(interval), static_cast<std::uint32_t>(owner)});
    }
  }
  auto runs = mergedRuns(rules, zone, span.after, span.end);
  // Several intervals of a job may have a run at the same time; it is listed once.
  runs.erase(std::unique(runs.begin(), runs.end()), runs.end());
  return runs;
}

std::string timeText(sys_seconds moment, const ZoneStretches& zone) {
  const local_seconds shown = zone.local(moment);
  return isoText(shown, shown.time_since_epoch() - moment.time_since_epoch());
}

void writeJson(const std::vector<CalendarJob>& jobs, const Span& span, const Context& context) {
  const ZoneStretches zone(span.zone, span.after, span.end);
  Json json = Json::array();
  for (const OwnedRun& run : runsOf(jobs, zone, span)) {
    const CalendarJob& job = jobs[run.owner];
    json.push_back({{"label", job.label}, {"path", job.path}, {"time", timeText(run.date, zone)}});
  }
  context.out << text(json) << '\n';
}

/// Writes lines such as "2026-11-21 09:00  org.example.backup".
void writeLines(const std::vector<CalendarJob>& jobs, const Span& span, const Context& context) {
  const ZoneStretches zone(span.zone, span.after, span.end);
  const auto runs = runsOf(jobs, zone, span);
  if (runs.empty()) context.err << "mirvelctl runs: no runs found\n";
  for (const OwnedRun& run : runs) {
    std::string moment = timeText(run.date, zone).substr(0, std::string_view("2026-11-21T09:00").size());
    moment[moment.find('T')] = ' ';
    context.out << moment << "  " << printable(jobs[run.owner].label) << '\n';
  }
}

Error badArgument(const std::string& message) {
  return {.code = Error::Code::BadArgument, .message = message};
}

Result<Span> spanOf(const ParsedArguments& arguments, const Machine& machine) {
  Span span{.zone = machine.timeZone(),
            .after = sys_seconds(seconds(std::llround(std::floor(machine.clock.secondsSince1970())))),
            .end = {}};
  if (const auto from = arguments.value("--from")) {
    const auto moment = isoMoment(*from, span.zone);
    if (!moment) return badArgument("invalid time `" + *from + "`; expected a time such as 2026-11-21T09:00");
    span.after = *moment;
  }
  constexpr std::int64_t usual = 30, most = 3660;
  std::optional<std::int64_t> count = usual;
  if (const auto given = arguments.value("--days")) count = Decimal::toInt(*given);
  if (!count || *count < 1 || *count > most) return badArgument("--days must be a number from 1 to 3660");
  span.end = span.after + hours(24) * *count;
  return span;
}

}  // namespace

int runs(Arguments arguments, const Context& context) {
  const auto parsed = parseArguments(arguments, {{"--from", true}, {"--days", true}, {"--past"}, {"--json"}});
  if (!parsed) return usageError("runs", parsed.error().message, context);
  if (parsed->has("--past")) return pastRuns(*parsed, context);
  const auto span = spanOf(*parsed, context.machine);
  if (!span) return usageError("runs", span.error().message, context);
  std::vector<CalendarJob> jobs;
  int status = Success;
  if (parsed->operands.empty()) {
    jobs = catalogueJobs(context);
  } else {
    status = readFiles(parsed->operands, jobs, context);
  }
  if (parsed->has("--json")) {
    writeJson(jobs, *span, context);
  } else {
    writeLines(jobs, *span, context);
  }
  return status;
}

}  // namespace mirvel::ctl
