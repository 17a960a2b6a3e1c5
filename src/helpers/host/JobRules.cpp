#include "helpers/host/JobRules.h"

#include <algorithm>
#include <set>

#include "helpers/hostdata/EnabledJobs.h"
#include "helpers/hostdata/HostMessages.h"

namespace mirvel::host {

using std::chrono::seconds;

namespace {

// Longer than any job will wait, and short enough that adding it to a moment never overflows.
constexpr std::int64_t longest = std::int64_t{100} * 365 * 24 * 3600;

// So that a job that ends immediately, or can't be started at all, doesn't keep the machine busy whatever its file
// says.
constexpr seconds shortestThrottle{1};

seconds duration(std::int64_t number) {
  return seconds(std::clamp<std::int64_t>(number, 0, longest));
}

std::vector<JobRules::Condition> conditions(const std::optional<jobfile::StringMap<bool>>& map) {
  std::vector<JobRules::Condition> result;
  if (!map) return result;
  for (const auto& [subject, isWanted] : *map) result.push_back({subject, isWanted});
  return result;
}

void readConditions(const jobfile::KeepAlive& keepAlive, JobRules& rules) {
  rules.onlyAfterInitialDemand = keepAlive.afterInitialDemand.value_or(false);
  rules.afterSuccess = keepAlive.successfulExit;
  rules.afterCrash = keepAlive.crashed;
  rules.paths = conditions(keepAlive.pathState);
  rules.otherJobs = conditions(keepAlive.otherJobEnabled);
  // The condition needs an exit status, so the job has to run once first.
  if (rules.afterSuccess && !rules.onlyAfterInitialDemand) rules.runAtLoad = true;
}

/// The indexes of the calendar intervals with an unusable value, as "[1]"; "" for a single interval without an array.
std::set<std::string> unusableIntervals(const jobfile::Plist& plist) {
  std::set<std::string> indexes;
  for (const auto& value : plist.opaqueValues()) {
    const auto& path = value.path;
    const bool isTime = path.front() == jobfile::Plist::text(jobfile::Plist::CodingKeys::StartCalendarInterval) &&
                        jobfile::StartCalendarInterval::Interval::codingKey(path.back());
    if (isTime) indexes.insert(path.size() > 2 ? path[1] : "");
  }
  return indexes;
}

void readCalendar(const jobfile::Plist& plist, JobRules& rules) {
  const auto& [intervals, isSingle] = *plist.startCalendarInterval;
  const auto unusable = unusableIntervals(plist);
  for (std::size_t i = 0; i < intervals.size(); ++i) {
    const std::size_t element = intervals[i].origin.value_or(i);  // the file can have other elements as well
    const std::string index = isSingle ? "" : "[" + std::to_string(element) + "]";
    if (!unusable.contains(index)) rules.calendar.push_back(CalendarRule::asRun(intervals[i]));
  }
}

void readTimes(const jobfile::Plist& plist, JobRules& rules) {
  if (plist.startInterval && *plist.startInterval > 0) rules.interval = duration(*plist.startInterval);
  if (plist.startCalendarInterval) readCalendar(plist, rules);
  if (plist.throttleInterval && *plist.throttleInterval >= 0) {
    rules.throttle = std::max(duration(*plist.throttleInterval), shortestThrottle);
  }
  if (plist.exitTimeOut && *plist.exitTimeOut == 0) rules.exitTimeOut = longestStop;  // launchd would wait forever
  if (plist.exitTimeOut && *plist.exitTimeOut > 0) rules.exitTimeOut = duration(*plist.exitTimeOut);
}

}  // namespace

JobRules JobRules::of(const jobfile::Plist& plist) {
  JobRules rules;
  rules.label = plist.name;
  rules.runAtLoad = plist.runAtLoad.value_or(false);
  rules.launchOnlyOnce = plist.launchOnlyOnce.value_or(false);
  rules.abandonProcessGroup = plist.abandonProcessGroup.value_or(false);
  rules.startOnMount = plist.startOnMount.value_or(false);
  rules.keepAlive = plist.isAlwaysKeptAlive();
  if (!rules.keepAlive && plist.keepAlive && !plist.keepAlive->bool_) readConditions(*plist.keepAlive, rules);
  readTimes(plist, rules);
  rules.watchPaths = plist.watchPaths.value_or(std::vector<std::string>());
  rules.queueDirectories = plist.queueDirectories.value_or(std::vector<std::string>());
  return rules;
}

std::vector<std::string> JobRules::pathsToWatch() const {
  std::vector<std::string> result = watchPaths;
  result.insert(result.end(), queueDirectories.begin(), queueDirectories.end());
  for (const Condition& condition : paths) result.push_back(condition.subject);
  std::sort(result.begin(), result.end());
  result.erase(std::unique(result.begin(), result.end()), result.end());
  return result;
}

std::vector<std::string> unservedKeys(const jobfile::Plist& plist) {
  using Keys = jobfile::Plist::CodingKeys;
  std::vector<std::string> result;
  const auto note = [&](bool isPresent, Keys key) {
    if (isPresent) result.emplace_back(jobfile::Plist::text(key));
  };
  note(plist.sockets.has_value(), Keys::Sockets);
  note(plist.machServices.has_value(), Keys::MachServices);
  note(plist.launchEvents.has_value(), Keys::LaunchEvents);
  note(plist.inetdCompatibility.has_value(), Keys::InetdCompatibility);
  return result;
}

std::vector<std::string> unusableValues(const jobfile::Plist& plist) {
  std::vector<std::string> result;
  for (const std::string& key : plist.unknownKeys.value_or(std::vector<std::string>())) {
    if (jobfile::Plist::codingKey(key)) result.push_back(key);
  }
  for (const auto& value : plist.opaqueValues()) result.push_back(value.text());
  return result;
}

Result<void> checkRunnable(const jobfile::Plist& plist, uid_t user) {
  using Keys = jobfile::Plist::CodingKeys;
  std::vector<Keys> essential = {Keys::Program, Keys::ProgramArguments, Keys::WorkingDirectory};
  if (user == 0) {
    essential.insert(essential.end(), {Keys::UserName, Keys::GroupName, Keys::RootDirectory, Keys::Umask});
  }
  for (const Keys key : essential) {
    if (isUnusable(plist, key)) return unusableError(key, "without it the job would not do what its file says");
  }
  return {};
}

}  // namespace mirvel::host
