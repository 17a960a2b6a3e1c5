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

/// Deletes jobs after asking the user, and keeps their files so that they can be restored. If a file can't be kept the
/// user is asked again first. Main thread only.
class JobDeletion {
 public:
  /// All must outlive this object.
  JobDeletion(ActionController& actions, DeletedJobs& deletedJobs, const Editing& editing, const Busy& saving,
              const Foundation& foundation, const Platform& platform, const Shell& shell)
      : m_actions(actions),
        m_deletedJobs(deletedJobs),
        m_editing(editing),
        m_saving(saving),
        m_foundation(foundation),
        m_platform(platform),
        m_shell(shell) {}

  /// Whether the job can be deleted now: there are no unsaved changes, no save is in progress, and the job isn't new,
  /// an application's own login item, in an extra folder, or part of the system (unless the user edits system jobs).
  bool canDelete(const Job& job) const;
  /// Asks whether to delete the job, in a sheet in which Return doesn't delete, and deletes it if the user agrees. Does
  /// nothing for null, or without a main window.
  void confirm(const std::shared_ptr<Job>& job);
  /// The text of the question: until when the job can be restored, or that it can't be.
  std::string consequence(const Job& job) const;

 private:
  void confirmed(const std::shared_ptr<Job>& job);
  void keepAndDelete(const std::shared_ptr<Job>& job);
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
