#pragma once

#include <cstdint>
#include <filesystem>

#include "core/actions/RevisionStore.h"
#include "core/files/URL.h"
#include "core/ports/Clock.h"
#include "core/propertylist/Value.h"
#include "core/settings/Defaults.h"
#include "core/settings/Store.h"

namespace mirvel {

class Launchd;

/// The revisions of all jobs: what was saved, by the path of the job's file. Main thread only.
///
///     {"/Users/x/Library/LaunchAgents/a.plist": [{"Date": 1700000000.5, "Plist": {"Label": "a", ...}}, ...]}
///
/// A list in which any entry isn't a dictionary counts as empty, and is replaced by the next save of the job.
class RevisionController {
 public:
  /// The keys of a revision: the time of the save as a real, in seconds since 1970, and the content as a dictionary.
  static constexpr const char* dateKey = RevisionStore::dateKey;
  static constexpr const char* plistKey = "Plist";

  /// Uses the file "Revisions.plist" in the folder. The references must outlive the controller. Failures to read or
  /// write are reported to `troubles`.
  RevisionController(const std::filesystem::path& folder, const Defaults& defaults, const Clock& clock,
                     StoreTroubles& troubles);

  /// An array of revisions for each path (`storeKey`), the newest first. Invalidated by the next call.
  const propertylist::Dictionary& revisions() const { return m_store.contents(); }
  /// Adds the present content of the job, and removes the oldest revisions beyond `Defaults::numberOfSavedRevisions`.
  /// If the file can't be written the revision is kept in memory. If it can't be read, no revision is added.
  void saveRevision(const Launchd& job);
  /// Removes the revisions of one job, or of all jobs.
  void clearRevisions(const URL& job);
  void clearRevisions();
  /// Where the revisions are.
  RevisionStore& store() { return m_store; }
  /// Moves the revisions of one path to another. Those which that path already has are kept, sorted by date.
  void jobMoved(const URL& from, const URL& to);

 private:
  RevisionStore m_store;
};

}  // namespace mirvel
