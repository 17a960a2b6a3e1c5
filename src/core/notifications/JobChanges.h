#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <vector>

#include "core/notifications/ChangeNotes.h"
#include "core/notifications/JobInventory.h"

namespace mirvel {

/// A difference between what was known and what was found.
struct JobChange {
  enum class What { Added, Changed, Moved, Removed };

  What what = What::Changed;
  std::filesystem::path path;       ///< where the job is now, or was before it was removed
  std::filesystem::path from = {};  ///< where a moved job was
  FoundJob job;                     ///< as it is now; of a removed one, what was known
};

/// The changes of a user's own notes that haven't been seen in a folder yet. Each note accounts for one change: if
/// another program later makes the same one, that is announced.
class OwnChanges {
 public:
  /// For each path, the number of the last note that doesn't count any more.
  using Used = std::map<std::filesystem::path, std::int64_t>;

  /// `notes` may also contain those of other users.
  OwnChanges(const std::vector<ChangeNote>& notes, uid_t user, Used used);

  /// Whether the user has made this change in Mirvel. From then on the notes of that path up to the one that says so
  /// don't count.
  bool take(const JobChange& change);

  /// Whether a scan would have found a change of this file.
  using Covers = std::function<bool(const std::filesystem::path& file)>;
  /// To be called after the changes of a scan were taken. A note that is more than `patience` older than the scan
  /// doesn't count any more: its change was seen, changed nothing, or wasn't made, and a later change of that file is
  /// by others. Returns whether younger notes are left, which a later scan has to find out. Both times, like the
  /// numbers of notes, are microseconds since 1970.
  bool expire(std::int64_t scanBegin, const Covers& covers);
  static constexpr std::int64_t patience = 10'000'000;  ///< a helper makes the change right after the note

  /// Forgets what was used of paths without notes. Only if all notes could be read, or used ones would count again.
  void dropPathsWithoutNotes();
  /// To be kept for the next comparison.
  const Used& used() const { return m_used; }

 private:
  bool isUsed(const ChangeNote& note) const;

  std::vector<ChangeNote> m_notes;
  Used m_used;
};

/// The changes by others between two states of the same folders, by path; those by the user are taken from `own`. A
/// file that is replaced is changed, whether it is overwritten or renamed over. A job that disappears in one place and
/// appears with the same content in another has moved.
std::vector<JobChange> changesBetween(const KnownJobs& known, const FoundJobs& found, OwnChanges& own);

}  // namespace mirvel
