#pragma once

#include <filesystem>
#include <optional>

#include "core/propertylist/Value.h"
#include "core/support/Clock.h"
#include "core/support/Defaults.h"

namespace mirvel {

class Launchd;

/// Earlier contents of the jobs, as they were saved: one store for all jobs, by the path of the job's file, the newest
/// first. It is read when it is first needed; one that can't be read counts as empty. For the main thread.
class RevisionController {
 public:
  /// Of a revision: a real, the seconds since 1970, and a dictionary, the content.
  static constexpr const char* dateKey = "Date";
  static constexpr const char* plistKey = "Plist";

  /// The store lies in the folder. The references outlive the controller.
  RevisionController(const std::filesystem::path& folder, const Defaults& defaults, const Clock& clock);

  /// An array of revisions under each path.
  const plist::Dictionary& revisions() const;
  /// Keeps what the job holds now, and drops the oldest beyond `Defaults::numberOfSavedRevisions`. A store that can't
  /// be written keeps it until the program ends.
  void saveRevision(const Launchd& job);
  void clearRevisions();

 private:
  plist::Dictionary& store() const;
  void write() const;

  const std::filesystem::path m_file;
  const Defaults& m_defaults;
  const Clock& m_clock;
  mutable std::optional<plist::Dictionary> m_revisions;
};

}  // namespace mirvel
