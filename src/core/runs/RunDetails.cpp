#include "core/runs/RunDetails.h"

#include <string_view>
#include <utility>

#include "core/runs/RunMoments.h"
#include "core/runs/RunStateTexts.h"
#include "core/runs/RunTexts.h"

namespace mirvel {

namespace {

constexpr std::string_view noBreakSpace = "\u00A0";

/// Keeps a number and its units on one line.
std::string unbroken(const std::string& words) {
  std::string result;
  for (const char character : words) {
    character == ' ' ? result.append(noBreakSpace) : result.append(1, character);
  }
  return result;
}

/// Keeps the number of a process on the line of the word before it.
std::string withUnbrokenProcess(std::string sentence, const std::string& process) {
  const std::size_t found = sentence.rfind(' ' + process);
  if (found != std::string::npos) sentence.replace(found, 1, noBreakSpace);
  return sentence;
}

/// Writes the sentences about one job.
class Describer {
 public:
  Describer(const RunMoments& moments, double now, const Localize& localize)
      : m_moments(moments), m_now(now), m_states(localize), m_ends(localize) {}

  std::string moment(double time) const { return m_moments.text(time, m_now); }

  /// Process IDs aren't grouped: "1234".
  std::string running(const JobReport& report) const {
    const std::string process = std::to_string(report.process);
    const bool isSinceKnown = !report.runs.empty() && !report.runs.back().end && report.runs.back().start > 0;
    return withUnbrokenProcess(report.isStopping ? m_states.stopping(process)
                               : isSinceKnown    ? m_states.runningSince(moment(report.runs.back().start), process)
                                                 : m_states.runningProcess(process),
                               process);
  }

  std::string ended(const RunReport& run) const {
    const RunEnd& end = *run.end;
    if (run.start <= 0) return m_states.lastRunEnded(m_ends.ended(end));
    if (end.how == RunEnd::How::CouldNotStart) return m_states.couldntStart(moment(run.start), m_ends.obstacle(end));
    if (end.how == RunEnd::How::Lost || !run.endTime) return m_states.ranUntilLost(moment(run.start));
    const bool hasCode = end.how == RunEnd::How::Exited && !end.isStopped && !end.isTimedOut;
    const std::string ending = m_ends.ending(end);
    return m_states.ran(moment(run.start), unbroken(m_ends.duration(*run.endTime - run.start)),
                        hasCode ? unbroken(ending) : ending);
  }

  std::string missed(const std::vector<MissedRun>& missed) const {
    const MissedRun& last = missed.back();
    return m_states.missed(static_cast<std::int64_t>(missed.size()), moment(last.time), m_ends.whyMissed(last.why));
  }

  std::string next(double time) const { return m_states.nextRun(moment(time)); }

 private:
  const RunMoments& m_moments;
  const double m_now;
  const RunStateTexts m_states;
  const RunTexts m_ends;
};

/// The newest run that has ended; null if there is none.
const RunReport* lastEnded(const JobReport& report) {
  for (auto run = report.runs.rbegin(); run != report.runs.rend(); ++run) {
    if (run->end) return &*run;
  }
  return nullptr;
}

/// Those since the last run: earlier ones were followed by a run, which made up for them.
std::vector<MissedRun> missedSince(const JobReport& report) {
  const double since = report.runs.empty() ? 0 : report.runs.back().start;
  std::vector<MissedRun> result;
  for (const MissedRun& missed : report.missed) {
    if (missed.time >= since) result.push_back(missed);
  }
  return result;
}

void describe(const JobReport& report, const Describer& describer, const RunStateTexts& texts, double now,
              std::vector<std::string>& lines) {
  if (report.process > 0) lines.push_back(describer.running(report));
  if (report.process <= 0 && !report.isLoaded) lines.push_back(texts.notLoaded());
  if (const RunReport* const ended = lastEnded(report)) {
    lines.push_back(describer.ended(*ended));
  } else if (report.process <= 0 && !report.isPartial) {
    lines.push_back(texts.hasntRunYet());
  }
  const auto missed = missedSince(report);
  if (!missed.empty()) lines.push_back(describer.missed(missed));
  if (report.isLoaded && report.nextRun && *report.nextRun > now) lines.push_back(describer.next(*report.nextRun));
  if (report.isPartial) lines.push_back(texts.earlierRunsArentKnown());
}

}  // namespace

RunDetails runDetails(const Job& job, const JobRuns& runs, const RunMoments& moments, double now,
                      const Localize& localize) {
  RunDetails details{.state = runs.state(job)};
  if (!job.kind.isLaunchd() || job.isNewFile) return details;
  const RunStateTexts texts(localize);
  if (!job.kind.canBeLoaded()) {
    for (const auto& link : job.linkedFrom) details.lines.push_back(texts.linkedFrom(link));
    if (details.lines.empty()) details.lines.push_back(texts.nothingIsLoadedFromThisFolder());
    return details;
  }
  const RunDomain domain = JobRuns::domainOf(job.originalKind);
  if (const JobReport* const report = runs.report(job)) {
    describe(*report, Describer(moments, now, localize), texts, now, details.lines);
    if (details.state == JobState::Failed && domain == RunDomain::User) details.failedRun = report->runs.back();
  } else if (const auto other = runs.otherFile(job); !other.empty()) {
    details.lines.push_back(texts.labelIsLoadedFrom(std::string(other)));
  } else if (details.state == JobState::NotLoaded) {
    details.lines.push_back(texts.notLoaded());
  }
  if (const auto& gap = runs.gap(domain); !gap.empty()) details.lines.push_back(texts.statesCantBeRead(gap));
  return details;
}

std::string runSummary(const Job& job, const JobRuns& runs, const RunMoments& moments, double now,
                       const Localize& localize) {
  auto lines = runDetails(job, runs, moments, now, localize).lines;
  return lines.empty() ? std::string() : std::move(lines.front());
}

std::optional<Image> stateImage(JobState state, const Localize& localize) {
  constexpr const char* names[] = {"mirvel-failed", "mirvel-running", "mirvel-stopping", "mirvel-waiting",
                                   "mirvel-not-loaded"};
  if (state == JobState::Unknown) return std::nullopt;
  Image image = Image::named(names[static_cast<std::size_t>(state)]);
  image.accessibilityDescription = RunStateTexts(localize).state(state);
  return image;
}

}  // namespace mirvel
