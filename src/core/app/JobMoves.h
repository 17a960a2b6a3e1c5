#pragma once

#include <filesystem>

#include "core/base/Signal.h"
#include "core/catalogue/Job.h"
#include "core/settings/Store.h"

namespace mirvel {

class Catalogue;
class NotesStore;
class RevisionController;
class Selection;
struct Notifications;

/// Keeps notes, revisions and custom icons, which are stored by the path of the job's file, with their job when the
/// file moves: by a save, or by another program. To find the latter's moves also at the next start, it keeps the labels
/// of the jobs that have any of these. For the main thread.
class JobMoves {
 public:
  /// Labels and icons lie in the folder. The references outlive it. To be made before others subscribe to
  /// `jobsUpdated`, so that they find all in place.
  JobMoves(const std::filesystem::path& applicationSupport, Catalogue& catalogue, const Selection& selection,
           Notifications& notifications, NotesStore& notes, RevisionController& revisions, StoreTroubles& troubles);

 private:
  void follow(const Jobs& oldJobs, const Jobs& jobs);
  void remember(const Jobs& jobs);
  void remember(const Job& job);
  void jobMoved(const URL& from, const URL& to);
  void moveIcon(const URL& from, const URL& to);

  const std::filesystem::path m_applicationSupport;
  NotesStore& m_notes;
  RevisionController& m_revisions;
  StoreTroubles& m_troubles;
  Store m_labels;
  Subscription m_noteChanged, m_iconGiven, m_catalogueWillChange, m_jobsUpdated, m_jobMoved;
};

}  // namespace mirvel
