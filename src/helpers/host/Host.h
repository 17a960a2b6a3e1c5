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
#include "helpers/host/Alarm.h"
#include "helpers/host/Calendar.h"
#include "helpers/host/HostedJob.h"
#include "helpers/host/JobLog.h"
#include "helpers/host/JobProcess.h"
#include "helpers/host/MountWatch.h"
#include "helpers/host/OutputLines.h"
#include "helpers/host/PathWatch.h"
#include "helpers/host/PollLoop.h"
#include "helpers/host/RunNotes.h"
#include "helpers/hostdata/HostMessages.h"
#include "helpers/hostdata/LoadedJobs.h"

namespace mirvel::host {

/// The loaded jobs and their processes. It lives on a loop; who owns both calls `settle` after each turn.
class Host {
 public:
  struct Settings {
    std::filesystem::path folder;       ///< of its state and logs
    Environment environment;            ///< every job's
    std::function<std::string()> zone;  ///< the name of the machine's time zone now
  };

  Host(Settings settings, PollLoop& loop);
  /// Processes that still run are killed.
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  /// Loads what was loaded when the host last ended, and stops what a host that was killed has left running. What can't
  /// be loaded stays noted, and is tried again when its file changes.
  void restore();
  /// Does the same with what another host had loaded; what is loaded here stays. Fails if it can't be noted.
  Result<void> takeOver(const std::vector<std::filesystem::path>& files);
  /// The files that `restore` would find, and so would another host.
  std::vector<std::filesystem::path> noted() const { return noted(nullptr); }
  enum class Noted { Yes, No };
  /// A job that isn't noted is forgotten when the host ends. Fails with `NotTrusted` for a file that others could have
  /// written, and with `StillRunning` while a job of that label is being stopped.
  Result<void> load(const std::filesystem::path& file, Noted noted = Noted::Yes);
  /// Loads the jobs of a folder that are enabled and whose labels aren't loaded yet, in the order of their file names.
  /// One that can't be loaded, or may be disabled, is named in the log, and is no reason to leave out the others.
  void loadEnabled(const std::filesystem::path& folder);
  /// One loaded job. Another that is loaded from the same file or under the same label later isn't the same.
  using Serial = std::uint64_t;
  /// Begins to unload the job of the label or, without one, of the file, and gives it. None: nothing was loaded.
  /// With both, a job of that label that was loaded from another file, which is still there, stays. What can't be noted
  /// isn't done: the job stays loaded.
  Result<std::optional<Serial>> unload(const std::filesystem::path& file, const std::optional<std::string>& label);
  /// Stops all processes, and starts no more; what is loaded stays noted.
  void quit();
  bool isQuitting() const { return m_quitBy.has_value(); }
  /// Kills what runs.
  void kill() const;

  /// Notes anew what is loaded and what runs: the notes are gone. False: that isn't possible now.
  bool noteAgain();
  /// For the log.
  void tell(std::string text);

  bool isLoaded(const std::string& label) const { return m_jobs.find(label) != m_jobs.end(); }
  bool isLoaded(Serial job) const { return entryOf(job) != nullptr; }
  /// None: nothing is loaded under that label.
  std::optional<Serial> serialOf(const std::string& label) const;
  /// Whether its last run is being stopped: a load of it then waits for that.
  bool isEnding(const std::string& label) const {
    const auto found = m_jobs.find(label);
    return found != m_jobs.end() && found->second->job.isUnloaded();
  }
  /// Nothing runs any more, or it has been waited for long enough since `quit`.
  bool hasQuit() const;
  /// Why a job that is being unloaded isn't gone yet.
  Error stillRunning(Serial job) const;
  /// Whether it has run to its end since it was loaded.
  bool hasRun(Serial job) const;
  std::vector<HostedJobStatus> status() const;
  const JobLog& log() const { return m_log; }

  /// Children have ended.
  void collect();
  /// Looks at the clocks, and does what the jobs say.
  void settle();
  /// Whether it must be called every `PathWatch::pollingSeconds` too, where the system tells of no changes.
  bool mustPoll() const { return m_pathWatch->descriptor() < 0; }
  /// When `settle` should be called next if nothing happens before.
  std::optional<std::chrono::milliseconds> wakeAt() const { return m_wakeAt; }

 private:
  struct Entry {
    Serial serial = 0;
    std::filesystem::path file;
    HostedJob job;
    ProcessPlan plan;
    Noted noted = Noted::Yes;
    JobProcess process = {};
    JobRun run = {};                     ///< of that process
    std::vector<JobRun> inherited = {};  ///< what earlier hosts have left
    OutputLines output = {};
  };
  using Jobs = std::map<std::string, std::unique_ptr<Entry>>;

  Jobs::iterator find(const std::filesystem::path& file, const std::optional<std::string>& label);
  /// Gives the label.
  Result<std::string> add(const std::filesystem::path& file, Noted noted);
  const Entry* entryOf(Serial job) const;
  static Error stillRunning(const Entry& entry);
  static Error alreadyLoaded(const Entry& entry, const std::filesystem::path& file);
  void restore(const std::filesystem::path& file);
  void restoreLater(const std::filesystem::path& file, const Error& error);
  void retry(const std::filesystem::path& file);
  void inherit(const RunNote& note);
  void addPending(const std::filesystem::path& file);
  void dropPending(const std::filesystem::path& file);
  void tellOfUnserved(const std::string& label, const jobfile::Plist& plist);
  void watchPaths();
  void watchMounts();
  void takePathChanges();
  void takeZone(const HostTime& now);
  void noteClock(const HostTime& now);
  void followOrders(Entry& entry, const HostTime& now);
  void start(Entry& entry, const HostTime& now);
  Result<void> noteRun(const Entry& entry) const;
  void noteNewRun(const Entry& entry);
  static void signal(const Entry& entry, int number);
  static std::vector<pid_t> leftOf(const Entry& entry);
  void clear(Entry& entry);
  void takeOutput(Entry& entry);
  void endProcess(Entry& entry, const ProcessEnd& end);
  void finish(Entry& entry);
  void leaveOutput(Entry& entry);
  void forget(Entry& entry);
  void addToLog(const Entry& entry, std::vector<std::string> lines);
  void addToLog(const std::string& label, std::string text);
  std::vector<std::filesystem::path> noted(const Entry* without) const;
  /// Notes what is loaded, without that job.
  Result<void> note(const Entry* without = nullptr) { return m_loadedJobs.write(noted(without)); }

  Settings m_settings;
  PollLoop& m_loop;
  Calendar m_calendar;
  JobLog m_log;
  LoadedJobs m_loadedJobs;
  RunNotes m_runNotes;
  Surroundings m_surroundings;
  std::unique_ptr<PathWatch> m_pathWatch;
  MountWatch m_mountWatch;
  Jobs m_jobs;
  Serial m_lastSerial = 0;
  std::set<std::filesystem::path> m_pending;    ///< files that are to be loaded, and couldn't be yet
  std::map<int, FileDescriptor> m_leftOutputs;  ///< of processes that outlive their jobs' own
  std::optional<std::chrono::milliseconds> m_clockDifference;
  std::optional<std::chrono::milliseconds> m_wakeAt;
  std::optional<std::chrono::milliseconds> m_quitBy;  ///< set: no more jobs are started
  bool m_hasNews = true;                              ///< something has happened since the jobs were asked last
};

}  // namespace mirvel::host
