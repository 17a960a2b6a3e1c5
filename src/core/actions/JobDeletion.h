#pragma once

#include <memory>
#include <string>

#include "core/base/Error.h"

namespace mirvel {

class ActionController;
class Busy;
class DeletedJobs;
class Editing;
class Job;
struct Foundation;
struct Platform;
struct Shell;

/// Deletes jobs: asks first, and keeps their files to be restored. For the main thread.
class JobDeletion {
 public:
  /// All outlive it.
  JobDeletion(ActionController& actions, DeletedJobs& deletedJobs, const Editing& editing, const Busy& saving,
              const Foundation& foundation, const Platform& platform, const Shell& shell)
      : m_actions(actions),
        m_deletedJobs(deletedJobs),
        m_editing(editing),
        m_saving(saving),
        m_foundation(foundation),
        m_platform(platform),
        m_shell(shell) {}

  /// Whether the job may be deleted now.
  bool canDelete(const Job& job) const;
  /// Asks whether to delete the job, in a sheet whose default isn't to, and deletes it if the user agrees. Does nothing
  /// for null and without a window.
  void confirm(const std::shared_ptr<Job>& job);
  /// Deletes the job as `ActionController::deleteConfirmed` does, and keeps its file. If that can't be kept, the user
  /// is asked once more.
  void deleteAndKeep(const std::shared_ptr<Job>& job);
  /// What the question says of the deletion: until when the job can be restored, or that it can't.
  std::string consequence(const Job& job) const;

 private:
  void confirmed(const std::shared_ptr<Job>& job);
  void askToDeleteAnyway(const std::shared_ptr<Job>& job, const Error& reason);
  void deleteWithoutKeeping(const Job& job);

  ActionController& m_actions;
  DeletedJobs& m_deletedJobs;
  const Editing& m_editing;
  const Busy& m_saving;
  const Foundation& m_foundation;
  const Platform& m_platform;
  const Shell& m_shell;
};

}  // namespace mirvel
