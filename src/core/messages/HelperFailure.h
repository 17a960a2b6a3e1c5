#pragma once

#include <optional>
#include <string>

#include "core/base/Error.h"
#include "core/propertylist/Value.h"

namespace mirvel {

/// The domain of the errors for which the application has a text by their code alone.
inline constexpr const char* actionErrorDomain = "MirvelActionErrorDomain";

enum class ActionErrorCode { NotConnected = 1, NotChanged = 4, NotChangedTryNewName = 5, NoLog = 7 };

/// The domain of all others, whose code is that of the cause. See `HelperFailure`.
inline constexpr const char* helperErrorDomain = "MirvelHelperErrorDomain";

/// What a helper couldn't do, and why. It travels in its parts, from which the application makes sentences in the
/// user's language.
struct HelperFailure {
  /// The numbers are those on the wire.
  enum class Deed { Answer = 0, Write = 1, Delete = 2, Read = 3, Load = 4, Unload = 5, Test = 6, Log = 7 };

  Deed deed = Deed::Answer;
  Error cause;
  bool isWritten = false;  ///< the job's file has the content that was asked for; what followed failed

  /// Whether another name of the file may help.
  bool isMatterOfName() const;
  /// The code in the domain of actions: for files that can't be written or deleted, and for the log.
  std::optional<ActionErrorCode> actionCode() const;
};

/// The error in a reply. One that comes from a helper of this version has a `failure`, or a code in the domain of
/// actions; of others it is whatever could be read.
struct HelperError {
  std::optional<std::string> domain = {};
  std::optional<propertylist::Integer> code = {};
  std::optional<std::string> description = {};  ///< a sentence in English
  std::optional<std::string> suggestion = {};
  std::optional<HelperFailure> failure = {};

  static HelperError of(ActionErrorCode code);
  static HelperError of(HelperFailure failure);

  propertylist::Dictionary dictionary() const;
  /// Keys with values of another type, and a failure with an unknown deed or cause, are ignored.
  static HelperError read(const propertylist::Dictionary& dictionary);
};

}  // namespace mirvel
