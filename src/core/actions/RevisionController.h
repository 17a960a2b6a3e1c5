#pragma once

#include <filesystem>

#include "core/files/URL.h"
#include "core/ports/Clock.h"
#include "core/propertylist/Value.h"
#include "core/settings/Defaults.h"
#include "core/settings/Store.h"

namespace mirvel {

class Launchd;

/// Earlier contents of the jobs, as they were saved: one store for all jobs, by the path of the job's file, the newest
/// first. For the main thread.
class RevisionController {
 public:
  /// Of a revision: a real, the seconds since 1970, and a dictionary, the content.
  static constexpr const char* dateKey = "Date";
  static constexpr const char* plistKey = "Plist";

  /// "Revisions.plist" lies in the folder. The references outlive the controller.
  RevisionController(const std::filesystem::path& folder, const Defaults& defaults, const Clock& clock,
                     StoreTroubles& troubles);

  /// An array of revisions under each path. Valid until the next call.
  const propertylist::Dictionary& revisions() const { return m_store.contents(); }
  /// Keeps what the job holds now, and drops the oldest beyond `Defaults::numberOfSavedRevisions`. A store that can't
  /// be written keeps it until the program ends.
  void saveRevision(const Launchd& job);
  /// Of one job, or of all of them.
  void clearRevisions(const URL& job);
  void clearRevisions();
  /// Gives the revisions that belong to one file to another, in the order of their dates with those that it has.
  void jobMoved(const URL& from, const URL& to);

 private:
  mutable Store m_store;  // reading may have to read the file again
  const Defaults& m_defaults;
  const Clock& m_clock;
};

}  // namespace mirvel
