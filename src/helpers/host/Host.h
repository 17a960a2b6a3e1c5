#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/process/Environment.h"
#include "helpers/host/FileSystemWatch.h"
#include "helpers/host/HostTime.h"
#include "helpers/host/JobReports.h"
#include "helpers/host/JobRunner.h"
#include "helpers/host/PollLoop.h"
#include "helpers/hostdata/HostMessages.h"
#include "helpers/hostdata/HostPlaces.h"
#include "helpers/hostdata/LoadedJobs.h"

namespace mirvel::host {

/// The loaded jobs. It runs on a poll loop, whose owner calls `settle` after each turn:
///
///     host.restore();
///     for (host.settle(); !host.hasQuit(); host.settle()) loop.turn(...);   // until `wakeAt` or an event
///
/// For one thread.
class Host {
 public:
  struct Settings {
    HostPlaces places;
    Environment environment;            ///< for every job
    std::function<std::string()> zone;  ///< returns the current time zone of the machine
  };

  /// The loop must outlive the host. Nothing is loaded yet.
  Host(Settings settings, PollLoop& loop);
  /// Kills the processes that are still running.
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  /// Loads the jobs that were loaded when the last host ended, except those disabled since, and stops what a host that
  /// was killed has left running. A file that can't be loaded now is loaded when it changes.
  void restore();
  /// Loads the files of another host in the same way, in addition to those loaded here. Fails if the list can't be
  /// saved.
  Result<void> takeOver(const std::vector<std::filesystem::path>& files);
  /// The files that the next host would restore: those loaded permanently and those waiting to be loaded.
  std::vector<std::filesystem::path> savedFiles() const { return savedFiles(nullptr); }

  /// A temporary job isn't saved, so that no other host loads it.
  enum class Lifetime { Permanent, Temporary };
  /// Loads a job file. Fails, with nothing loaded, with
  /// - `BadArgument` if the path is relative or a job with the same label is loaded;
  /// - `NotTrusted` if others could have written the file;
  /// - `MissingKey` without a label or program;
  /// - `WrongType` if an essential value is unusable (`checkRunnable`);
  /// - `StillRunning` while the last run of that label is being stopped; a permanent job is then loaded afterwards;
  /// - `Io` if the host is shutting down; and other errors of reading the file or saving the list.
  Result<void> load(const std::filesystem::path& file, Lifetime lifetime = Lifetime::Permanent);
  /// Loads the enabled jobs of a folder whose labels aren't loaded yet, in the order of their file names. Each file
  /// that can't be loaded is logged with the reason.
  void loadEnabled(const std::filesystem::path& folder);
  /// Identifies one loading of a job: if the same label or file is loaded again, it gets another serial number.
  using Serial = std::uint64_t;
  /// Starts to unload the job with the label, or without a label that of the file, and returns its serial number; none
  /// if no such job is loaded. With both, a job of that label is left alone if it was loaded from another file that
  /// still exists. Fails, and leaves the job loaded, if the list can't be saved: the job would come back with the next
  /// host.
  Result<std::optional<Serial>> unload(const std::filesystem::path& file, const std::optional<std::string>& label);
  /// Starts or stops the job of that label. Returns its serial number; the caller waits for the effect. Fails with
  /// `NotFound` if the label isn't loaded from that file, or is being unloaded.
  Result<Serial> control(const std::filesystem::path& file, const std::string& label, messages::Control::Order order);
  /// Stops all jobs and starts none any more. The saved list stays.
  void quit();
  bool isQuitting() const { return m_quitBy.has_value(); }
  /// Whether all jobs have ended since `quit`, or `longestQuit` has passed.
  bool hasQuit() const;
  /// Tells the readers of its reports that it has ended, before anybody else can know: clients that wait for its end
  /// may delete the folder then.
  void leaveReports() { m_reports.removeMark(); }
  /// Sends SIGKILL to all processes of all jobs.
  void kill() const;

  /// Saves the list, the records of all runs and the reports again after their files were deleted. False if that isn't
  /// possible now.
  bool saveAgain();
  /// Adds a line about the host itself to the log.
  void logMessage(const std::string& text);
  JobLog& log() { return m_log; }
  /// See `OutputCapture::follow`.
  void followLogs(const std::set<std::string>& labels) { m_capture.follow(labels); }

  bool isLoaded(const std::string& label) const { return m_jobs.find(label) != m_jobs.end(); }
  bool isLoaded(Serial job) const { return find(job) != nullptr; }
  /// None if no job of the label is loaded.
  std::optional<Serial> serialOf(const std::string& label) const;
  /// Why a job that is being unloaded isn't gone yet.
  Error stillRunning(Serial job) const;
  /// Null if the job isn't loaded.
  const JobRunner* runnerOf(Serial job) const;
  /// Whether the host has only loaded temporary jobs, which are gone: then nobody needs it.
  bool hasOnlyTested() const { return m_hasTested && !m_isNeeded && m_jobs.empty() && m_pending.empty(); }
  std::vector<HostedJobStatus> status() const;

  /// Collects the children that have ended. Called after SIGCHLD.
  void collect();
  /// Reads the clocks and does what the jobs decide.
  void settle();
  /// Whether `settle` also has to be called every `PathWatch::pollingSeconds`.
  bool mustPoll() const { return m_pathWatch->isPolling(); }
  /// When to call `settle` again if nothing happens before, on the running clock; none: only after an event.
  std::optional<std::chrono::milliseconds> wakeAt() const;

 private:
  struct Entry {
    Serial serial;
    Lifetime lifetime;
    std::unique_ptr<JobRunner> runner;
    bool hasOwnLog = false;  ///< a test's, which is deleted with it

    bool isUnloaded() const { return runner->job().isUnloaded(); }
  };
  using Jobs = std::map<std::string, Entry>;

  Jobs::iterator find(const std::filesystem::path& file, const std::optional<std::string>& label);
  const Entry* find(Serial job) const;
  /// Returns the label.
  Result<std::string> add(const std::filesystem::path& file, Lifetime lifetime);
  Result<std::string> add(const std::filesystem::path& file, const jobfile::Plist& plist, Lifetime lifetime);
  Result<void> addIfEnabled(const std::filesystem::path& file);
  Entry& insert(const std::filesystem::path& file, JobRules rules, ProcessPlan plan, Lifetime lifetime,
                JobRunner::Purpose purpose);
  bool isEnding(const std::string& label) const;
  void restore(const std::filesystem::path& file);
  void restoreLater(const std::filesystem::path& file, const Error& error);
  void retry(const std::filesystem::path& file);
  void inherit(const RunRecord& record);
  void addPending(const std::filesystem::path& file);
  void dropPending(const std::filesystem::path& file);
  void watchPaths();
  void watchMounts();
  void takePathChanges();
  void tidyReports();
  void removeLogOfTest(const std::string& label);
  void restoreReports();
  void logTroubles();
  void updateZone(const HostTime& now);
  void updateClock(const HostTime& now);
  void followDecisions(const HostTime& now);
  void planWake(const HostTime& now);
  void forget(const std::string& label);
  void addToLog(const std::string& label, const std::string& text);
  std::vector<std::filesystem::path> savedFiles(const Entry* without) const;
  /// Saves the list of loaded jobs, except that one.
  Result<void> save(const Entry* without = nullptr) { return m_loadedJobs.write(savedFiles(without)); }

  Settings m_settings;
  PollLoop& m_loop;
  Calendar m_calendar;
  JobLog m_log;
  LoadedJobs m_loadedJobs;
  RunRecords m_runRecords;
  DiscardedOutputs m_discarded;
  JobReports m_reports;
  OutputCapture m_capture;
  const JobRunner::Shared m_shared;
  Surroundings m_surroundings;
  std::unique_ptr<PathWatch> m_pathWatch;
  MountWatch m_mountWatch;
  Jobs m_jobs;  ///< by label
  Serial m_lastSerial = 0;
  std::set<std::filesystem::path> m_pending;                   ///< files that are loaded as soon as possible
  std::optional<std::chrono::milliseconds> m_clockDifference;  ///< from the running to the wall clock
  std::optional<std::chrono::milliseconds> m_wakeAt;
  std::optional<std::chrono::milliseconds> m_quitBy;  ///< set by `quit`
  bool m_hasTested = false;                           ///< a temporary job was loaded, here or by a host that was killed
  bool m_isNeeded = false;                            ///< others were, or the jobs of a folder
  bool m_hasNews = true;                              ///< whether the decisions of the jobs may have changed
};

}  // namespace mirvel::host
