#pragma once

#include <string>

#include "core/locale/Localize.h"
#include "core/runs/JobRuns.h"

namespace mirvel {

/// The texts about states of jobs, and of the commands that start and stop them.
class RunStateTexts : public Texts {
 public:
  using Texts::Texts;

  /// The state in one or two words; empty for `Unknown`.
  std::string state(JobState state) const {
    switch (state) {
      case JobState::Failed:
        return failed();
      case JobState::Running:
        return running();
      case JobState::Stopping:
        return text("Stopping");
      case JobState::Waiting:
        return text("Waiting");
      case JobState::NotLoaded:
        return text("Not loaded");
      case JobState::Unknown:
        return {};
    }
    return {};
  }

  std::string itIsBeingStopped() const { return text("The job is being stopped."); }
  std::string changesArentSaved(const std::string& name) const { return format("“%@” has unsaved changes", {name}); }
  std::string couldntStart(const std::string& moment, const std::string& reason) const {
    return format("Couldn’t be started %@: %@", {moment, reason});
  }
  std::string disable() const { return text("Disable"); }
  std::string earlierRunsArentKnown() const {
    return text("The system doesn’t report when this job ran, or how its earlier runs ended.");
  }
  std::string enableItFirst() const { return text("The job is disabled. Enable it and save it first."); }
  std::string failed() const { return text("Failed"); }
  std::string filterWords() const {
    return format("Also finds the states “%@” and “%@”", {failedWord(), runningWord()});
  }
  /// The words of the filter, in the user's language; in English they are "failed" and "running".
  std::string failedWord() const { return text("failed"); }
  std::string runningWord() const { return text("running"); }
  std::string itIsAlreadyDisabled() const { return text("The job is already disabled."); }
  std::string itIsntRunning() const { return text("The job isn’t running."); }
  std::string itIsAlreadyRunning() const { return text("The job is already running."); }
  std::string itMustBeEditable() const { return text("This job can’t be changed."); }
  std::string labelIsLoadedFrom(const std::string& path) const {
    return format("Not loaded, because a job with the same label is loaded from “%@”.", {path});
  }
  std::string linkedFrom(const std::string& path) const { return format("Linked from “%@”.", {path}); }
  std::string nothingIsLoadedFromThisFolder() const { return text("Not loaded: no job folder links to this file."); }
  std::string lastOutput() const { return text("Last Output"); }
  std::string lastRun() const { return text("Last Run"); }
  std::string lastRunFailed() const { return text("the last run failed"); }
  std::string lastRunEnded(const std::string& end) const { return format("Last run: %@", {end}); }
  std::string missed(std::int64_t count, const std::string& last, const std::string& why) const {
    return count == 1 ? format("Missed the run of %@, because %@.", {last, why})
                      : format("Missed %@ runs, the last one %@, because %@.", {int_(count), last, why});
  }
  std::string hasntRunYet() const { return text("Hasn’t run yet"); }
  std::string nextRun(const std::string& moment) const { return format("Next run: %@", {moment}); }
  std::string notLoaded() const { return text("Not loaded"); }
  std::string ran(const std::string& moment, const std::string& duration, const std::string& end) const {
    return format("Ran %@ for %@, %@", {moment, duration, end});
  }
  std::string ranUntilLost(const std::string& moment) const {
    return format("Ran %@; how it ended isn’t known", {moment});
  }
  std::string restart() const { return text("Restart"); }
  std::string runNow() const { return text("Run Now"); }
  std::string runs() const { return text("Runs"); }
  std::string running() const { return text("Running"); }
  std::string runningSince(const std::string& moment, const std::string& process) const {
    return format("Running since %@ (process %@)", {moment, process});
  }
  std::string runningProcess(const std::string& process) const { return format("Running (process %@)", {process}); }
  std::string runWhatIsSaved() const { return text("Run What Is Saved"); }
  std::string saveAndRun() const { return text("Save and Run"); }
  std::string saveItFirst() const { return text("Save the job first."); }
  std::string saveOrDiscardFirst() const { return text("Save or discard your changes first."); }
  std::string showLog() const { return text("Show Log"); }
  std::string state() const { return text("State"); }
  std::string statesCantBeRead(const std::string& reason) const {
    return format("Whether this job runs can’t be read: %@", {reason});
  }
  std::string stop() const { return text("Stop"); }
  std::string stopping(const std::string& process) const { return format("Stopping (process %@)", {process}); }
  std::string theRunHasOnlyWhatIsSaved() const {
    return text("Only what is saved can be run. If you don’t save, the job runs without your changes.");
  }
};

}  // namespace mirvel
