#pragma once

#include <optional>

#include "core/propertylist/Value.h"
#include "core/support/Error.h"

namespace mirvel {

/// What a helper couldn't do, and why. It goes over the wire in its parts, of which the application makes sentences in
/// the user's language.
struct HelperFailure {
  /// The numbers go over the wire.
  enum class Deed { Answer = 0, Write = 1, Delete = 2, Read = 3, Load = 4, Unload = 5, Test = 6, Log = 7 };

  Deed deed = Deed::Answer;
  Error cause;
  bool isWritten = false;  ///< the job's file stands as was asked, and what followed failed

  /// The dictionary under "error". Files that can't be written or deleted, and the log, have the domain of actions.
  plist::Dictionary dictionary() const;
  /// None if it doesn't hold one.
  static std::optional<HelperFailure> from(const plist::Dictionary& error);
  /// Whether another name of the file may help.
  bool isMatterOfName() const;
};

}  // namespace mirvel
