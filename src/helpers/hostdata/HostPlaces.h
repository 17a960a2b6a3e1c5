#pragma once

#include <filesystem>

#include "core/base/Result.h"
#include "core/files/Roots.h"

namespace mirvel {

/// The folder of the notes on runs, in the folder of a host.
inline std::filesystem::path runNotesIn(const std::filesystem::path& folder) {
  return folder / "runs";
}

/// Where a user's host keeps its files, and listens. It follows from the user's folders alone, so that a host that
/// was started at login and a client in a terminal, whose environments differ, mean the same place.
struct HostPlaces {
  std::filesystem::path folder;  ///< its state, logs, lock and socket
  std::filesystem::path socket;

  static HostPlaces of(const Roots& roots);

  /// Makes the folder, open to nobody else. Fails if it can't be made, or is another's.
  Result<void> make() const;
};

}  // namespace mirvel
