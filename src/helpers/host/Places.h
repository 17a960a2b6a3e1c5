#pragma once

#include <filesystem>

#include "core/support/Environment.h"
#include "core/support/Result.h"
#include "core/support/Roots.h"

namespace mirvel::host {

/// Where a user's host keeps its things, and is reached.
struct Places {
  std::filesystem::path folder;  ///< its state, logs and lock
  std::filesystem::path socket;

  /// The socket lies in the user's runtime folder, if there is one, else with the state.
  static Places of(const Roots& roots, const Environment& environment);
  /// Everything with the state: for a machine below a folder, which has no runtime folder.
  static Places below(const Roots& roots);

  /// Makes the folders, open to nobody else. Fails if one can't be made, or is another's.
  Result<void> make() const;
};

}  // namespace mirvel::host
