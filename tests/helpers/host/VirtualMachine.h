#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/propertylist/Writer.h"
#include "helpers/host/HostedJob.h"

namespace mirvel::host {

/// The text of a job file with the label "job".
inline std::string fileOf(propertylist::Dictionary keys) {
  keys.set("Label", "job");
  return *propertylist::writeXml(keys);
}

/// The job of that file.
inline jobfile::Plist jobWith(const propertylist::Dictionary& keys) {
  auto plist = jobfile::Plist::readTolerantly(fileOf(keys));
  if (!plist) throw std::runtime_error(plist.error().text());
  return *std::move(plist);
}

/// A machine in virtual time that runs one job. The public members say how long its processes run and how they end.
class VirtualMachine {
 public:
  using Order = HostedJob::Order;

  /// `keys` are those of the job besides its label. The running clock begins with 0, the wall clock with `begin`.
  explicit VirtualMachine(const propertylist::Dictionary& keys, const std::string& zone = "Etc/UTC",
                          std::chrono::sys_seconds begin = {})
      : now{.wall = begin}, m_calendar(zone), m_job(JobRules::of(jobWith(keys)), m_surroundings) {}

  void load(std::optional<std::chrono::sys_seconds> absentSince = {}) {
    m_job.load(now, absentSince);
    settle();
  }

  /// Loads the job while processes of an earlier host's run exist.
  void loadWithRemains() {
    m_job.load(now);
    m_job.foundRunning(now);
    m_clearedAt = now.running + left;
    settle();
  }

  /// Ends the remaining processes now.
  void clear() {
    m_clearedAt = now.running;
    settle();
  }

  /// Lets the time pass, and calls the job at each moment at which it wants to be called or something happens.
  void runUntil(long second) {
    const std::chrono::milliseconds last = std::chrono::seconds(second);
    while (now.running < last) {
      auto next = last;
      if (const auto wake = m_job.wakeAt(now)) next = std::min(next, std::max(*wake, now.running + tick));
      if (m_endsAt) next = std::min(next, *m_endsAt);
      if (m_clearedAt) next = std::min(next, *m_clearedAt);
      advance(next - now.running);
      settle();
    }
  }

  /// The machine sleeps: the job isn't called, and both clocks advance.
  void sleepUntil(long second) {
    advance(std::chrono::seconds(second) - now.running);
    settle();
  }

  void setClock(std::chrono::seconds by) {
    now.wall += by;
    m_job.clockChanged(now, by);
    settle();
  }

  void unload() {
    m_job.unload(now);
    settle();
  }

  void request() {
    m_job.request();
    settle();
  }

  void stop() {
    m_job.stop(now);
    settle();
  }

  void restart() {
    m_job.restart(now);
    settle();
  }

  /// Ends the process now.
  void end() {
    m_endsAt = now.running;
    settle();
  }

  /// What was missed, such as "02:30 asleep", by the wall clock in UTC.
  std::vector<std::string> missed() {
    const char* const reasons[] = {"running", "asleep", "no host"};
    std::vector<std::string> result;
    for (const MissedRun& run : m_job.takeMissed()) {
      const auto minute = static_cast<long>(run.time) / 60 % (24 * 60);
      const auto digits = [](long number) { return std::to_string(100 + number).substr(1); };
      result.push_back(digits(minute / 60) + ":" + digits(minute % 60) + " " + reasons[static_cast<int>(run.why)]);
    }
    return result;
  }

  /// Does what the job decides until it waits.
  void settle() {
    if (m_endsAt && *m_endsAt <= now.running) {
      m_endsAt.reset();
      m_job.ended(outcome, now, left > left.zero() ? HostedJob::Left::Others : HostedJob::Left::Nothing);
      if (left > left.zero()) m_clearedAt = now.running + left;
    }
    if (m_clearedAt && *m_clearedAt <= now.running) {
      m_clearedAt.reset();
      m_job.cleared();
    }
    for (int i = 0; i < 100 && !m_isForgotten; ++i) {
      switch (m_job.decide(now)) {
        case Order::Wait:
          return;
        case Order::Start:
          start();
          break;
        case Order::Terminate:
          stops.push_back("TERM " + second());
          break;
        case Order::Kill:
          stops.push_back("KILL " + second());
          break;
        case Order::Forget:
          stops.push_back("forgotten " + second());
          m_isForgotten = true;
          return;
      }
    }
    if (!m_isForgotten) FAIL() << "the job never waits";
  }

  HostedJob& job() { return m_job; }

  HostTime now;
  std::optional<std::chrono::seconds> duration = std::chrono::seconds(1);  ///< of a process; none: endless
  std::chrono::seconds left{0};  ///< how long the processes run that it leaves behind
  int failures = 0;              ///< the number of starts that fail temporarily
  ProcessEnd outcome;
  std::vector<long> starts;
  std::vector<RunCause> causes;  ///< of the starts
  std::vector<std::string> stops;
  std::set<std::string> there;  ///< paths that exist, folders that hold files, labels that are loaded

 private:
  static constexpr std::chrono::milliseconds tick{1};

  void start() {
    if (failures > 0) {
      --failures;
      return m_job.startFailed(now);
    }
    starts.push_back(std::chrono::duration_cast<std::chrono::seconds>(now.running).count());
    causes.push_back(m_job.cause());
    m_job.started(now);
    if (duration) m_endsAt = now.running + *duration;
  }

  void advance(std::chrono::milliseconds time) {
    now.running += time;
    now.wall += time;
  }

  std::string second() const {
    return std::to_string(std::chrono::duration_cast<std::chrono::seconds>(now.running).count());
  }

  Calendar m_calendar;
  std::optional<std::chrono::milliseconds> m_endsAt;
  std::optional<std::chrono::milliseconds> m_clearedAt;
  Surroundings m_surroundings{.exists = [this](const std::string& path) { return there.count(path) > 0; },
                              .holdsFiles = [this](const std::string& folder) { return there.count(folder) > 0; },
                              .isLoaded = [this](const std::string& label) { return there.count(label) > 0; },
                              .firstRun = [this](auto rules, auto after) { return m_calendar.firstRun(rules, after); },
                              .lastRuns = [this](auto rules, auto after, auto until,
                                                 auto most) { return m_calendar.lastRuns(rules, after, until, most); }};
  HostedJob m_job;
  bool m_isForgotten = false;
};

}  // namespace mirvel::host
