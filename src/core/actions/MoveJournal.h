#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/files/URL.h"
#include "core/settings/Store.h"

namespace mirvel {

/// Records the moves of jobs between the user's folder and those of root while they are in progress. These need several
/// requests. If the program ends between two of them, its next start completes or undoes the move, so that the job
/// isn't left in both places. Main thread only.
class MoveJournal {
 public:
  /// A move in either direction. At its end one of the two files remains.
  struct Move {
    URL users;             ///< in the user's folder
    URL roots;             ///< in one of root's folders
    std::string label;     ///< the label in root's file
    std::string checksum;  ///< the `Checksum` of the content of the user's file
  };

  /// Uses the file "Moves.plist" in the folder. A journal that can't be read is reported to `troubles`, which must
  /// outlive this object.
  MoveJournal(const std::filesystem::path& folder, StoreTroubles& troubles);

  /// Records a move before its first request is sent. On failure nothing is recorded, now or later, and the move must
  /// not start.
  Result<void> begin(const Move& move);
  /// Removes the record of a move, identified by the path of the user's file.
  Result<void> end(const URL& users);
  /// The moves that haven't ended. Empty if the journal can't be read; entries that can't be decoded are skipped.
  std::vector<Move> unfinished();

 private:
  StoreTroubles m_troubles;
  Store m_store;  ///< keyed by the path of the user's file
};

/// How an interrupted move is completed or undone.
enum class MoveRemedy {
  None,         ///< nothing to do: both files are gone, or the user's file has been changed since
  RemoveUsers,  ///< both files exist: remove the user's file
  LoadUsers,    ///< only the user's file exists: load it
  LoadRoots,    ///< only root's file exists: load it
};
/// The remedy according to the files that exist now. Root's file counts only if it has the recorded label.
MoveRemedy remedyFor(const MoveJournal::Move& move);

}  // namespace mirvel
