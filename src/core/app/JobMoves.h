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

/// Lets notes, revisions and custom icons, which are stored by the path of the job's file, follow the file when a save
/// or another program moves it. A move by another program is recognised in a scan: the old path is gone, and exactly
/// one job of the same label has appeared elsewhere. To recognise moves that happened while the program wasn't running,
/// the labels of the jobs concerned are stored in "JobLabels.plist". For the main thread.
class JobMoves {
 public:
  /// `applicationSupport` is the folder of labels and icons. The other arguments must outlive this object. Must be
  /// constructed before others subscribe to `jobsUpdated`, so that they see everything at its new place. Failures are
  /// reported to `troubles`.
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
