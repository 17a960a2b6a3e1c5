#pragma once

#include <filesystem>
#include <memory>

#include "core/base/Signal.h"
#include "core/session/Selection.h"
#include "core/settings/Store.h"

namespace mirvel {

class NotesStore;
class RevisionController;

/// Keeps notes, revisions and custom icons, which are stored by the path of the job's file, with their job when the
/// file moves: by a save, or by another program. To find the latter's moves also at the next start, it keeps the labels
/// of the jobs that have any of these. For the main thread.
class JobMoves {
 public:
  /// Labels and icons lie in the folder. The references outlive it.
  JobMoves(const std::filesystem::path& applicationSupport, const Selection& selection, NotesStore& notes,
           RevisionController& revisions, StoreTroubles& troubles);

  /// What belongs to the job of one file belongs to that of another from now on. What the other has is kept, too.
  void jobMoved(const URL& from, const URL& to);
  /// Finds the files that other programs moved: of which the path is gone, while one job of the catalogue, and no
  /// other, has the label. To be called with each new catalogue, before it is shown.
  void follow(const Jobs& oldJobs, const Jobs& jobs);
  /// Notes the labels of those jobs that have something which would have to follow them. To be called with each new
  /// catalogue once the jobs have their custom icons.
  void remember(const Jobs& jobs);
  /// To be called when a job was given an icon; of a note it is known.
  void remember(const Job& job);

 private:
  void moveIcon(const URL& from, const URL& to);

  const std::filesystem::path m_applicationSupport;
  NotesStore& m_notes;
  RevisionController& m_revisions;
  StoreTroubles& m_troubles;
  Store m_labels;
  Subscription m_noteChanged;
};

/// The job of a new catalogue whose file is that of a job of the old one at another place: the only one with its label,
/// new at its place, while the old file is gone. Null: there is none.
std::shared_ptr<Job> findMoved(const Job& job, const Jobs& oldJobs, const Jobs& newJobs);

}  // namespace mirvel
