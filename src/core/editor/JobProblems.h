#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/base/Signal.h"
#include "core/catalogue/Checksum.h"
#include "core/catalogue/Kind.h"
#include "core/lint/Findings.h"
#include "core/ports/MainQueue.h"
#include "core/session/SessionContext.h"

namespace mirvel {

class Busy;
class Job;
class Launchd;
class Localize;

/// Owns what lint has found in the jobs of the catalogue and in the job that is being edited. Everything is checked as
/// a save would write it, on the check queue; no result blocks anything. For the main thread.
///
/// The selected job is checked when it is selected, and a quarter of a second after each edit; continued typing
/// postpones the check. If a disk doesn't answer, the findings that don't depend on it are published alone. The other
/// launchd jobs are checked one after the other when a scan has changed the catalogue, unless their files are the same.
/// What depends on other files than the job's may therefore be out of date until a job is selected.
class JobProblems {
 public:
  using Findings = std::vector<lint::Finding>;

  /// All parts of the session outlive it. Registers itself as the problem test of `CurrentMode`.
  JobProblems(const SessionContext& session, lint::TargetMachine machine);
  ~JobProblems();
  JobProblems(const JobProblems&) = delete;
  JobProblems& operator=(const JobProblems&) = delete;

  /// Whether jobs are checked; a setting. Switching it off discards all results, and shows all jobs.
  bool isOn() const;
  void setOn(bool isOn);

  /// The problems of the selected job, in the order of the file. After an edit, those before it until the next check.
  /// Empty if no launchd job is selected. Invalidated by `changed`.
  const Findings& findings() const { return m_findings; }
  /// Posted when `findings` has changed.
  Signal<>& changed() { return m_changed; }
  /// Whether problems were found in the file of the job; edits don't count. False if it hasn't been checked yet.
  bool hasProblems(const Job& job) const;

 private:
  struct Question;
  struct Answer {
    Findings findings;
    bool isComplete = true;  ///< false: without what had to be looked up on disks
  };
  struct Checked {
    Checksum checksum;  ///< of the file
    Kind kind;
    Findings findings;
  };

  void ask(Question question, std::function<void(Answer)> deliver);
  Question questionAbout(const Launchd& job, bool isEdited) const;

  void settingChanged();

  // The selected job.
  void selectionChanged();
  void edited();
  void postpone();
  void checkSelected();
  void answered(std::uint64_t state, const std::shared_ptr<Launchd>& job, Answer answer);
  void publish(Findings findings);
  const Checked* known(const Job& job) const;

  // The catalogue.
  void catalogueChanged();
  void checkNext();
  void store(const Job& job, Findings findings);
  void refreshView();

  const SessionContext m_session;
  const lint::TargetMachine m_machine;
  std::shared_ptr<Outbox> m_outbox;
  Delay m_delay;
  Limit m_refreshes;
  Signal<> m_changed;

  std::weak_ptr<Launchd> m_job;  ///< the job that `m_findings` is about
  Findings m_findings;
  std::uint64_t m_state = 0;  ///< counts the states of the selected job; an answer is about one of them
  bool m_isPostponed = false;

  std::map<std::string, Checked> m_checked;  ///< by URL
  std::deque<std::weak_ptr<Job>> m_waiting;
  std::uint64_t m_background = 0;  ///< counts the checks in the background; only the last one is followed by another
  bool m_isInBackground = false;   ///< checks are running in the background, or about to begin
  bool m_isViewOutdated = false;

  std::vector<Subscription> m_subscriptions;
};

/// The number of problems by severity, such as "1 error, 2 warnings"; empty without findings.
std::string problemSummary(const JobProblems::Findings& findings, const Localize& localize);

/// Applies a fix to the selected job, as one edit that can be undone, and shows it in the editor. Returns false, and
/// changes nothing, if the job can't be fixed now, or isn't as it was when the problem was found.
bool applyFix(const SessionContext& session, const Busy& saving, const lint::Fix& fix);

}  // namespace mirvel
