#include <algorithm>
#include <optional>
#include <ostream>

#include "core/process/Arguments.h"
#include "core/process/Commands.h"
#include "core/runs/LaunchctlReports.h"
#include "core/text/Strings.h"
#include "ctl/Json.h"
#include "ctl/Printable.h"
#include "ctl/Reports.h"
#include "ctl/Style.h"
#include "ctl/Subcommand.h"
#include "helpers/hostdata/EnabledJobs.h"
#include "helpers/hostdata/HostPlaces.h"

namespace mirvel::ctl {

namespace {

struct HostState {
  std::string_view hostName;
  bool isRunning;
  std::vector<JobReport> jobs = {};        ///< of the user, that are loaded
  std::vector<JobReport> rootsJobs = {};   ///< likewise of root
  std::vector<EnabledJob> notLoaded = {};  ///< enabled but not loaded; always empty for launchd, which isn't asked
};

bool hasJobFailed(const JobReport& job) {
  return job.process == 0 && !job.runs.empty() && hasFailed(job.runs.back());
}

const char* stateName(const JobReport& job) {
  if (job.process > 0) return job.isStopping ? "stopping" : "running";
  return hasJobFailed(job) ? "failed" : "waiting";
}

/// The last run that has ended; null if there is none.
const RunReport* lastEnded(const JobReport& job) {
  const auto found = std::find_if(job.runs.rbegin(), job.runs.rend(), [](const auto& run) { return run.end; });
  return found == job.runs.rend() ? nullptr : &*found;
}

/// When the current run began, in seconds since 1970; none if it isn't known.
std::optional<double> runningSince(const JobReport& job) {
  const bool isKnown = job.process > 0 && !job.runs.empty() && !job.runs.back().end && job.runs.back().start > 0;
  return isKnown ? std::optional(job.runs.back().start) : std::nullopt;
}

template <typename Number>
Json numberOrNull(const std::optional<Number>& number) {
  return number ? Json(*number) : Json(nullptr);
}

Json jobObject(const JobReport& job, const char* domain, const Localize& localize) {
  const RunReport* const last = lastEnded(job);
  return {{"label", job.label},
          {"path", job.path.empty() ? Json(nullptr) : Json(job.path)},
          {"domain", domain},
          {"state", stateName(job)},
          {"process", job.process > 0 ? Json(job.process) : Json(nullptr)},
          {"since", numberOrNull(runningSince(job))},
          {"lastRun", last ? runObject(*last, localize) : Json(nullptr)},
          {"nextRun", numberOrNull(job.nextRun)}};
}

void writeJson(const HostState& answer, const Context& context) {
  Json jobs = Json::array(), notLoaded = Json::array();
  const char* const own = context.machine.isRoots ? "root" : "user";
  for (const auto& job : answer.jobs) jobs.push_back(jobObject(job, own, context.localize));
  for (const auto& job : answer.rootsJobs) jobs.push_back(jobObject(job, "root", context.localize));
  for (const auto& job : answer.notLoaded) {
    notLoaded.push_back({{"label", job.label.empty() ? Json(nullptr) : Json(job.label)}, {"path", job.file.string()}});
  }
  context.out << text(Json{{"host", answer.hostName},
                           {"running", answer.isRunning},
                           {"jobs", std::move(jobs)},
                           {"notLoaded", std::move(notLoaded)}})
              << '\n';
}

std::string stateText(const JobReport& job, bool hasColour) {
  if (job.process == 0) return hasJobFailed(job) ? coloured("failed", Colour::Red, hasColour) : "not running";
  const auto since = runningSince(job);
  std::string state = job.isStopping ? "stopping" : "running";
  if (since && !job.isStopping) state += " since " + momentText(*since);
  return coloured(state, Colour::Green, hasColour) + " as process " + std::to_string(job.process);
}

std::string describe(const JobReport& job, const Context& context) {
  std::string result = stateText(job, context.hasColour);
  if (const RunReport* const last = lastEnded(job)) {
    result += "; last run ";
    if (last->start > 0) result += momentText(last->start) + ' ';
    result += printable(endText(*last, context.localize));
  }
  if (job.nextRun) result += "; next run " + momentText(*job.nextRun);
  return result;
}

void writeJobs(const std::vector<JobReport>& jobs, const Context& context) {
  for (const auto& job : jobs) context.out << "  " << printable(job.label) << "  " << describe(job, context) << '\n';
}

void writeText(const HostState& answer, const Context& context) {
  context.out << bold(answer.hostName, context.hasColour)
              << (answer.isRunning ? "" : " isn't running, so no jobs are loaded") << '\n';
  if (answer.isRunning && answer.jobs.empty()) context.out << "  no jobs are loaded\n";
  writeJobs(answer.jobs, context);
  for (const auto& job : answer.notLoaded) {
    const std::string name = job.label.empty() ? job.file.filename().string() : job.label;
    context.out << "  " << printable(name) << "  enabled but not loaded\n";
  }
  if (answer.rootsJobs.empty()) return;
  context.out << bold("jobs of root", context.hasColour) << '\n';
  writeJobs(answer.rootsJobs, context);
}

Result<HostState> askLaunchd(const std::string& launchctl, ProcessRunner& runner) {
  const auto said = runner.run(launchctl, {"list"});
  if (!said) return said.error();
  if (said->exitStatus != 0) {
    const std::string complaints(String::trim(said->complaints, true));
    return Error{.code = Error::Code::Io, .message = "launchctl can't list the jobs: " + complaints};
  }
  return HostState{.hostName = "launchd", .isRunning = true, .jobs = launchctlReports(said->output)};
}

/// The enabled jobs of the user's folders that the host hasn't loaded; all of them if it isn't running.
std::vector<EnabledJob> notLoadedIn(const Roots& roots, const std::vector<JobReport>& loaded) {
  std::vector<EnabledJob> result;
  for (const auto& folder : agentFolders(roots)) {
    for (auto& job : enabledJobsIn(folder)) {
      const bool isLoaded =
          std::any_of(loaded.begin(), loaded.end(), [&](const auto& known) { return known.label == job.label; });
      if (!isLoaded) result.push_back(std::move(job));
    }
  }
  return result;
}

std::vector<JobReport> loadedJobs(RunDomain domain, const Context& context) {
  auto reports = publishedReports(domain, context);
  std::erase_if(reports, [](const JobReport& report) { return !report.isLoaded; });
  return reports;
}

/// Doesn't start the host: a status must not change what it describes. Reports of a host that was killed still have
/// jobs as loaded.
HostState readEmbeddedHost(const Context& context) {
  const Roots& roots = context.machine.roots;
  HostState answer{.hostName = "mirvel-host",
                   .isRunning = static_cast<bool>(connectToHost(HostPlaces::of(roots).socket))};
  const bool isRoots = context.machine.isRoots;
  if (answer.isRunning) answer.jobs = loadedJobs(isRoots ? RunDomain::Root : RunDomain::User, context);
  if (!isRoots) answer.rootsJobs = loadedJobs(RunDomain::Root, context);
  answer.notLoaded = notLoadedIn(roots, answer.jobs);
  return answer;
}

Result<HostState> askHost(const Context& context) {
  const std::string launchctl = Commands::forThisMachine(context.machine.environment).launchctl;
  if (isProgram(launchctl)) return askLaunchd(launchctl, context.machine.runner);
  return readEmbeddedHost(context);
}

}  // namespace

int status(Arguments arguments, const Context& context) {
  const auto parsed = parseArguments(arguments, {{"--json"}});
  if (!parsed) return usageError("status", parsed.error().message, context);
  if (!parsed->operands.empty()) return usageError("status", "expected no file", context);
  const auto answer = askHost(context);
  if (!answer) {
    context.err << "mirvelctl status: " << printable(answer.error().text()) << '\n';
    return Failed;
  }
  if (parsed->has("--json")) {
    writeJson(*answer, context);
  } else {
    writeText(*answer, context);
  }
  return Success;
}

}  // namespace mirvel::ctl
