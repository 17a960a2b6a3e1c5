#include <algorithm>
#include <chrono>
#include <ctime>
#include <ostream>
#include <sstream>

#include "core/process/Arguments.h"
#include "core/process/Commands.h"
#include "core/text/Digits.h"
#include "core/text/Strings.h"
#include "ctl/Json.h"
#include "ctl/Printable.h"
#include "ctl/Style.h"
#include "ctl/Subcommand.h"
#include "helpers/hostdata/EnabledJobs.h"
#include "helpers/hostdata/HostClient.h"
#include "helpers/hostdata/HostPlaces.h"

namespace mirvel::ctl {

namespace {

using Jobs = std::vector<HostedJobStatus>;

/// Local time, such as "2026-03-29 03:00".
std::string localText(std::chrono::sys_seconds moment) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(moment);
  std::tm time{};
  ::localtime_r(&seconds, &time);
  char text[32];
  return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", &time)};
}

template <typename Number>
Json numberOrNull(const std::optional<Number>& number) {
  return number ? Json(*number) : Json(nullptr);
}

Json jobObject(const HostedJobStatus& job) {
  Json lastExit = nullptr;
  if (job.lastEnd) {
    lastExit = {{"code", numberOrNull(job.lastCode)}, {"signal", numberOrNull(job.lastSignal)}, {"text", *job.lastEnd}};
  }
  Json nextRun = nullptr;
  if (job.nextRun) nextRun = static_cast<std::int64_t>(job.nextRun->time_since_epoch().count());
  return {{"label", job.label},
          {"path", job.path.empty() ? Json(nullptr) : Json(job.path)},
          {"process", numberOrNull(job.process)},
          {"lastExit", std::move(lastExit)},
          {"nextRun", std::move(nextRun)}};
}

struct HostState {
  std::string_view hostName;
  bool isRunning;
  Jobs jobs;
  std::vector<EnabledJob> notLoaded = {};  ///< enabled but not loaded; always empty for launchd, which isn't asked
};

void writeJson(const HostState& answer, const Context& context) {
  Json jobs = Json::array(), notLoaded = Json::array();
  for (const auto& job : answer.jobs) jobs.push_back(jobObject(job));
  for (const auto& job : answer.notLoaded) {
    notLoaded.push_back({{"label", job.label.empty() ? Json(nullptr) : Json(job.label)}, {"path", job.file.string()}});
  }
  context.out << text(Json{{"host", answer.hostName},
                           {"running", answer.isRunning},
                           {"jobs", std::move(jobs)},
                           {"notLoaded", std::move(notLoaded)}})
              << '\n';
}

std::string describe(const HostedJobStatus& job) {
  std::string result = job.process ? "running as process " + std::to_string(*job.process) : "not running";
  if (job.lastEnd) result += "; last run " + *job.lastEnd;
  if (job.nextRun) result += "; next run " + localText(*job.nextRun);
  return result;
}

void writeText(const HostState& answer, const Context& context) {
  context.out << bold(answer.hostName, context.hasColour)
              << (answer.isRunning ? "" : " isn't running, so no jobs are loaded") << '\n';
  if (answer.isRunning && answer.jobs.empty()) context.out << "  no jobs are loaded\n";
  for (const auto& job : answer.jobs) {
    context.out << "  " << printable(job.label) << "  " << printable(describe(job)) << '\n';
  }
  for (const auto& job : answer.notLoaded) {
    const std::string name = job.label.empty() ? job.file.filename().string() : job.label;
    context.out << "  " << printable(name) << "  enabled but not loaded\n";
  }
}

/// Parses a line of `launchctl list`: process id or "-", last exit status (negative for a signal), label. The heading
/// yields nullopt.
std::optional<HostedJobStatus> jobInLine(const std::string& line) {
  std::istringstream words(line);
  std::string process, last, label;
  if (!std::getline(words, process, '\t') || !std::getline(words, last, '\t') || !std::getline(words, label)) return {};
  const auto number = [](const std::string& text) -> std::optional<std::int64_t> {
    if (!text.starts_with('-')) return Decimal::toInt(text);
    const auto size = Decimal::toInt(std::string_view(text).substr(1));
    return size ? std::optional(-*size) : std::nullopt;
  };
  if (process != "-" && !number(process)) return {};  // the heading
  HostedJobStatus job{.label = label, .path = {}, .process = number(process)};
  if (const auto end = number(last)) {
    job.lastCode = std::max<std::int64_t>(*end, 0);
    job.lastSignal = std::max<std::int64_t>(-*end, 0);
    job.lastEnd = *end < 0 ? "was ended by signal " + std::to_string(-*end) : "exited with " + last;
  }
  return job;
}

Result<HostState> askLaunchd(const std::string& launchctl, ProcessRunner& runner) {
  const auto said = runner.run(launchctl, {"list"});
  if (!said) return said.error();
  if (said->exitStatus != 0) {
    const std::string complaints(String::trim(said->complaints, true));
    return Error{.code = Error::Code::Io, .message = "launchctl can't list the jobs: " + complaints};
  }
  HostState answer{.hostName = "launchd", .isRunning = true, .jobs = {}};
  std::istringstream lines(said->output);
  for (std::string line; std::getline(lines, line);) {
    if (auto job = jobInLine(line)) answer.jobs.push_back(*std::move(job));
  }
  return answer;
}

/// The enabled jobs of the user's folders that the host hasn't loaded; all of them if it isn't running.
std::vector<EnabledJob> notLoadedIn(const Roots& roots, const Jobs& loaded) {
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

/// Doesn't start the host, because this program changes nothing on the machine.
Result<HostState> askEmbeddedHost(const Roots& roots) {
  auto jobs = HostClient(HostPlaces::of(roots).socket).status();
  if (!jobs && !HostClient::isNoHost(jobs.error())) return jobs.error();
  HostState answer{.hostName = "mirvel-host", .isRunning = static_cast<bool>(jobs), .jobs = {}};
  if (jobs) answer.jobs = *std::move(jobs);
  answer.notLoaded = notLoadedIn(roots, answer.jobs);
  return answer;
}

Result<HostState> askHost(const Machine& machine) {
  const std::string launchctl = Commands::forThisMachine(machine.environment).launchctl;
  if (isProgram(launchctl)) return askLaunchd(launchctl, machine.runner);
  return askEmbeddedHost(machine.roots);
}

}  // namespace

int status(Arguments arguments, const Context& context) {
  const auto parsed = parseArguments(arguments, {{"--json"}});
  if (!parsed) return usageError("status", parsed.error().message, context);
  if (!parsed->operands.empty()) return usageError("status", "expected no file", context);
  const auto answer = askHost(context.machine);
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
