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

  /// Gives all that belongs to the job of one file to that of another, which keeps what it has.
  void jobMoved(const URL& from, const URL& to);
  /// To be called when a job was given an icon. Changes of notes are noticed without that.
  void remember(const Job& job);

 private:
  void follow(const Jobs& oldJobs, const Jobs& jobs);
  void remember(const Jobs& jobs);
  void moveIcon(const URL& from, const URL& to);

  const std::filesystem::path m_applicationSupport;
  NotesStore& m_notes;
  RevisionController& m_revisions;
  StoreTroubles& m_troubles;
  Store m_labels;
  Subscription m_noteChanged, m_catalogueWillChange, m_jobsUpdated, m_jobMoved;
};

}  // namespace mirvel
