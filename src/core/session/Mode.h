#pragma once

#include <memory>

#include "core/catalogue/Job.h"

namespace mirvel {

class JobMenu;

/// The ways in which the main window shows the catalogue, in the order of its tabs. The number is stored.
enum class Mode : int { grid = 0, tree = 1, list = 2, timeline = 3 };

/// What shows the catalogue in one mode. For the main thread.
class ModeType {
 public:
  ModeType() = default;
  virtual ~ModeType() = default;
  ModeType(const ModeType&) = delete;
  ModeType& operator=(const ModeType&) = delete;

  /// Marks the job at the URL, shows it, and, unless there are unsaved changes, makes it the selected job. Does nothing
  /// if the mode shows no such job.
  virtual void select(const URL& url) = 0;
  /// Marks this very job and shows it. The selected job stays.
  virtual void select(const std::shared_ptr<Job>& job) = 0;
  /// Shows other jobs.
  virtual void update(const Jobs& jobs) = 0;
  /// Drops the details, and leaves nothing marked. The selected job stays.
  virtual void deselect() = 0;
  /// Fills the menu of a job.
  virtual void contextMenu(JobMenu& menu, const std::shared_ptr<Job>& job) = 0;
  /// Draws the entry of a job anew.
  virtual void reloadJob(const std::shared_ptr<Job>&) {}
};

}  // namespace mirvel
