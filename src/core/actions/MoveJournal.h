#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/files/URL.h"
#include "core/settings/Store.h"

namespace mirvel {

/// Notes the moves between the user's folder and those of root that are under way, so that one which the program's end
/// interrupts leaves the job in one place: the next start ends it. For the main thread.
class MoveJournal {
 public:
  /// A move in either direction: of the two files one is to go.
  struct Move {
    URL users;             ///< the file in the user's folder
    URL roots;             ///< the file in one of root's folders
    std::string label;     ///< that root's file has
    std::string checksum;  ///< of the user's file; see `Checksum`
  };

  /// The journal, "Moves.plist", lies in the folder. `troubles` outlives it, and hears what is wrong with a journal
  /// that was read.
  MoveJournal(const std::filesystem::path& folder, StoreTroubles& troubles);

  /// If it can't be noted, the error is all that is left of it.
  Result<void> begin(const Move& move);
  Result<void> end(const URL& users);
  /// What was begun and has not ended. None if the journal can't be read.
  std::vector<Move> unfinished();

 private:
  StoreTroubles m_troubles;
  Store m_store;
};

/// What is to be done about an interrupted move.
enum class MoveRemedy {
  None,         ///< there is no such file any more, or the user's one isn't that which was moved
  RemoveUsers,  ///< both stand
  LoadUsers,    ///< only the user's file stands
  LoadRoots,    ///< only root's file stands
};
/// Looks at both files.
MoveRemedy remedyFor(const MoveJournal::Move& move);

}  // namespace mirvel
