#pragma once

#include <signal.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/process/Environment.h"
#include "helpers/host/DiscardedOutputs.h"
#include "helpers/host/HostedJob.h"
#include "helpers/host/JobLog.h"
#include "helpers/host/JobOutput.h"
#include "helpers/host/JobProcess.h"
#include "helpers/host/JobRun.h"
#include "helpers/host/PollLoop.h"
#include "helpers/host/RunHistory.h"
#include "helpers/hostdata/HostMessages.h"

namespace mirvel::host {

/// Carries out the decisions of one loaded job: starts, signals and collects its processes, logs their output, keeps
/// the records of its runs, and publishes its report. The destructor leaves processes that are still running alone. For
/// one thread.
class JobRunner {
 public:
  /// What all jobs of a host share. Everything must outlive the runners.
  struct Shared {
    PollLoop& loop;
    JobLog& log;
    const RunRecords& records;
    const Environment& environment;  ///< for every job
    DiscardedOutputs& discarded;
    JobReports& reports;
    OutputCapture& capture;
  };

  enum class Purpose {
    Job,     ///< its report stays when it is unloaded
    Test,    ///< its report is deleted then
    Remains  ///< there are only processes of an earlier host to be stopped; it has no report
  };

  JobRunner(HostedJob job, std::filesystem::path file, ProcessPlan plan, const Shared& shared, Purpose purpose);
  ~JobRunner();
  JobRunner(const JobRunner&) = delete;
  JobRunner& operator=(const JobRunner&) = delete;

  HostedJob& job() { return m_job; }
  const HostedJob& job() const { return m_job; }
  const std::string& label() const { return m_job.rules().label; }
  const std::filesystem::path& file() const { return m_file; }
  Purpose purpose() const { return m_purpose; }
  HostedJobStatus status(const HostTime& now) const;

  /// Called once: loads the job and continues its report.
  void load(const HostTime& now);
  /// Stops the job for good. Of a test, also stops what `AbandonProcessGroup` or a session of its own has let outlive
  /// the run: nothing is left of a test.
  void unload(const HostTime& now);
  /// Stops the job because the host ends. The report goes on saying that it is loaded, so that the next host knows.
  void quit(const HostTime& now);
  /// Writes the report if something has changed, or, if `again`, in any case.
  void publish(const HostTime& now, bool again = false);

  /// How far the last start of the job's process has come.
  struct Attempt {
    std::uint64_t number = 0;           ///< counts the attempts since the job was loaded
    bool isSettled = false;             ///< whether the program is known to run, or not to
    std::optional<Error> failure = {};  ///< why it doesn't; `Io`, or `LimitExceeded` if there may be room for it later
  };
  const Attempt& attempt() const { return m_attempt; }
  /// The first run since the job was loaded, once it has ended.
  const std::optional<RunReport>& firstRun() const { return m_firstRun; }

  /// Takes charge of a run that an earlier host has left: its processes are stopped before the job is started.
  void inherit(const JobRun& run);
  /// Does what the job decides until it waits. False: the job is unloaded and gone, and the caller destroys this
  /// object.
  [[nodiscard]] bool followDecisions(const HostTime& now);
  /// Whether its process has ended since the last call; called after SIGCHLD.
  bool collect();
  /// Checks whether the processes are gone that an ended run has left behind. Called before `followDecisions`.
  void checkRemains();
  /// Sends SIGKILL to all processes, without waiting for their end.
  void kill() const { signal(SIGKILL); }

  /// The `StillRunning` error that names the remaining processes.
  Error stillRunning() const;
  /// Writes the records of all runs again, for example after their folder was deleted.
  Result<void> saveRecords() const;

 private:
  Reach reach() const { return m_job.isStopped() ? Reach::Everything : Reach::Group; }
  std::vector<pid_t> processes() const;
  void signal(int number) const;
  void start(const HostTime& now);
  void startFailed(const Error& why, const HostTime& now);
  void takeStartFailure();
  void noteFirstRun();

  /// The part of the report that isn't about runs of the past.
  struct State {
    bool isLoaded = false;
    bool isStopping = false;
    std::int64_t process = 0;
    std::int64_t processStart = 0;
    std::optional<double> nextRun = {};

    bool operator==(const State&) const = default;
  };
  static State stateIn(const JobReport& report);
  State state(const HostTime& now) const;
  bool mustPublish(State state) const;

  Result<void> saveRecord(const JobRun& run) const;
  void recordRun();
  void finishProcess(const RunEnd& end);
  void finishRun();
  void keepOrRemoveRecord();
  void inheritFromTest(const HostTime& now);
  void log(const std::string& text) const;

  HostedJob m_job;
  std::filesystem::path m_file;
  ProcessPlan m_plan;
  const Shared& m_shared;
  JobProcess m_process;
  JobRun m_run;                     ///< of `m_process`
  std::optional<JobRun> m_left;     ///< of a test that has ended, while processes are left of it
  std::vector<JobRun> m_inherited;  ///< runs of earlier hosts
  Purpose m_purpose;
  RunHistory m_history;
  std::optional<State> m_published;
  bool m_isKept = false;  ///< `quit` was called
  Attempt m_attempt;
  std::optional<StartFailure> m_startFailure;  ///< of `m_process`
  std::optional<RunReport> m_firstRun;
  JobOutput m_output;
};

}  // namespace mirvel::host
