#pragma once

#include <optional>

#include "core/base/Error.h"
#include "core/propertylist/Value.h"

namespace mirvel {

/// The domain of the errors whose code alone tells the application what to say.
inline constexpr const char* actionErrorDomain = "MirvelActionErrorDomain";

enum class ActionErrorCode { NotConnected = 1, NotChanged = 4, NotChangedTryNewName = 5, NoLog = 7 };

/// The domain of all others, whose code is that of the cause. See `HelperFailure`.
inline constexpr const char* helperErrorDomain = "MirvelHelperErrorDomain";

/// What a helper couldn't do, and why. It goes over the wire in its parts, of which the application makes sentences in
/// the user's language.
struct HelperFailure {
  /// The numbers go over the wire.
  enum class Deed { Answer = 0, Write = 1, Delete = 2, Read = 3, Load = 4, Unload = 5, Test = 6, Log = 7 };

  Deed deed = Deed::Answer;
  Error cause;
  bool isWritten = false;  ///< the job's file stands as was asked, and what followed failed

  /// The dictionary under "error". Files that can't be written or deleted, and the log, have the domain of actions.
  propertylist::Dictionary dictionary() const;
  /// None if it doesn't hold one.
  static std::optional<HelperFailure> from(const propertylist::Dictionary& error);
  /// Whether another name of the file may help.
  bool isMatterOfName() const;
};

}  // namespace mirvel
