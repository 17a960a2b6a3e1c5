#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "core/actions/SavePlan.h"
#include "core/base/Claims.h"
#include "core/jobfile/Plist.h"
#include "core/session/Busy.h"

namespace mirvel {

class Launchd;
class Program;

/// One save of a job, from the password to the last answer. It alone ends the job's edit, when all that it asked for
/// has been done. If a step fails, those before it are taken back, and the job, its record and its edit are as they
/// were: the job is in one place, and loaded if it was. For the main thread.
///
/// Lives as long as an answer is waited for.
class SaveRun final : public std::enable_shared_from_this<SaveRun> {
 public:
  using Ended = std::function<void(bool isWritten)>;

  /// The record is ready to be written; `before` is what it becomes again if the save fails.
  SaveRun(Program& program, std::shared_ptr<Launchd> job, jobfile::Plist before, SavePlan plan, Ended ended);

  /// Asks for the password, if one is needed, before anything else.
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

  Program& m_program;
  const std::shared_ptr<Launchd> m_job;
  jobfile::Plist m_before;
  SavePlan m_plan;
  Ended m_ended;
  Busy::Token m_saving;
  Claims::Claim m_file;
  std::optional<Role> m_role;  ///< of the step that is waited for
  bool m_isTakingBack = false;
  bool m_isOldUnloaded = false;
  bool m_isNoted = false;  ///< in the journal of moves
};

}  // namespace mirvel
