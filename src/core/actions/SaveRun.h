#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "core/actions/ActionContext.h"
#include "core/actions/SavePlan.h"
#include "core/base/Claims.h"
#include "core/jobfile/Plist.h"
#include "core/session/Busy.h"

namespace mirvel {

class ActionController;
class Launchd;

/// One save of a job, from the password to the last reply. Ends the job's edit when all steps have succeeded. If a step
/// fails, the previous ones are rolled back: the file is in its former place, the job is loaded if it was, and the
/// record and the edit are as they were before the save. Main thread only.
///
/// Keeps itself alive through the callbacks of the requests that it waits for.
class SaveRun final : public std::enable_shared_from_this<SaveRun> {
 public:
  /// Called with whether the save has succeeded. If the file is new or has moved, this includes a job that has been
  /// written but couldn't be loaded.
  using Ended = std::function<void(bool isWritten)>;

  /// The job's record must have been prepared by `normalizeForSave`; it is replaced by `before` if the save fails.
  /// `actions` and `context` must outlive the run. `ended` is called once, and may be empty.
  SaveRun(ActionController& actions, const ActionContext& context, std::shared_ptr<Launchd> job, jobfile::Plist before,
          SavePlan plan, Ended ended);

  /// Asks for the password if the plan needs root, then about comments in the file, and sends the first request. To be
  /// called once.
  void start();

 private:
  using Role = SaveStep::Role;

  void begin();
  bool wasOvertaken() const;
  bool endsOvertaken();
  void next();
  void send(const SaveStep& step);
  bool recordMove();
  void answered(bool isDone);
  void failed();
  void writeFailed();
  void rollBack();
  void addRemovalOfNew();
  void addLoadOfOld();
  void addStep(Action::Shared action, bool isRoots);

  void finish(bool isWritten);
  void keepWritten();
  void restoreEdit();
  void endEdit();
  bool isWritten() const;
  bool isUndone() const;

  ActionController& m_actions;
  const ActionContext& m_context;
  const std::shared_ptr<Launchd> m_job;
  jobfile::Plist m_before;
  SavePlan m_plan;
  Ended m_ended;
  Busy::Token m_saving;
  Claims::Claim m_file;
  std::optional<Role> m_role;  ///< the role of the pending request
  bool m_isRollingBack = false;
  bool m_isOldUnloaded = false;
  bool m_isOvertaken = false;  ///< another program has changed the file
  bool m_isRecorded = false;   ///< in the `MoveJournal`
};

}  // namespace mirvel
