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

/// One save of a job, from the password to the last answer. Ends the job's edit when all steps have succeeded. If one
/// fails, the steps before it are rolled back, and the job, its record and its edit are as they were: the job is in one
/// place, and loaded if it was. Owned by the requests that it waits for. For the main thread.
class SaveRun final : public std::enable_shared_from_this<SaveRun> {
 public:
  using Ended = std::function<void(bool isWritten)>;

  /// The record is ready to be written; `before` replaces it if the save fails.
  SaveRun(ActionController& actions, const ActionContext& context, std::shared_ptr<Launchd> job, jobfile::Plist before,
          SavePlan plan, Ended ended);

  /// Starts with the password, if one is needed.
  void start();

 private:
  using Role = SaveStep::Role;

  void begin();
  bool wasOvertaken() const;
  bool endsOvertaken();
  void next();
  void send(const SaveStep& step);
  bool noteMove();
  void answered(bool isDone);
  void failed();
  void writeFailed();
  void takeBack();
  void addRemovalOfNew();
  void addLoadOfOld();
  void addStep(Action::Shared action, bool isRoots);

  void finish(bool isWritten);
  void keepWritten();
  void putBack();
  void endEdit();
  bool isWritten() const;

  ActionController& m_actions;
  const ActionContext& m_context;  ///< of the controller
  const std::shared_ptr<Launchd> m_job;
  jobfile::Plist m_before;
  SavePlan m_plan;
  Ended m_ended;
  Busy::Token m_saving;
  Claims::Claim m_file;
  std::optional<Role> m_role;  ///< of the pending step
  bool m_isTakingBack = false;
  bool m_isOldUnloaded = false;
  bool m_isNoted = false;  ///< in the journal of moves
};

}  // namespace mirvel
