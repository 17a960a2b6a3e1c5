#pragma once

#include <memory>

#include "core/catalogue/Job.h"

namespace mirvel {

class JobMenu;

/// The ways in which the main window shows the catalogue, in the order of its tabs. The values are stored in the
/// settings, and must not change.
enum class Mode : int { Grid = 0, Tree = 1, List = 2, Timeline = 3 };

/// A view that shows the catalogue in one mode. A job can be marked in it, which is independent of the selection: the
/// filter can hide the selected job. Implemented by the shell; for the main thread.
class ModeType {
 public:
  ModeType() = default;
  virtual ~ModeType() = default;
  ModeType(const ModeType&) = delete;
  ModeType& operator=(const ModeType&) = delete;

  /// Marks the job with this URL, scrolls to it and, unless there are unsaved changes, selects it. Does nothing if the
  /// view doesn't show it.
  virtual void select(const URL& url) = 0;
  /// Marks exactly this job and scrolls to it. The selection doesn't change.
  virtual void select(const std::shared_ptr<Job>& job) = 0;
  /// Replaces the jobs that are shown.
  virtual void update(const Jobs& jobs) = 0;
  /// Marks nothing, and clears the details. The selection doesn't change.
  virtual void deselect() = 0;
  /// Adds the commands for a job to its context menu.
  virtual void contextMenu(JobMenu& menu, const std::shared_ptr<Job>& job) = 0;
  /// Redraws the entry of a job.
  virtual void reloadJob(const std::shared_ptr<Job>&) {}
  /// Redraws the entries of all jobs. Rows and scroll position don't change.
  virtual void redraw() {}
};

}  // namespace mirvel
