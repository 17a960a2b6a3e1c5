#pragma once

#include <optional>
#include <string>

#include "core/base/Error.h"
#include "core/propertylist/Value.h"

namespace mirvel {

/// The domain of errors whose text the application derives from the code alone.
inline constexpr const char* actionErrorDomain = "MirvelActionErrorDomain";

/// The codes of that domain.
enum class ActionErrorCode {
  NotConnected = 1,          ///< the helper couldn't be reached, or doesn't accept the request
  NotChanged = 4,            ///< a file couldn't be written or deleted
  NotChangedTryNewName = 5,  ///< likewise, because of its name
  NoLog = 7,                 ///< the log couldn't be queried
};

/// The domain of all other errors. Their code is derived from the cause; see `HelperFailure`.
inline constexpr const char* helperErrorDomain = "MirvelHelperErrorDomain";

/// An operation that failed in a helper, and the cause. It is sent as structured data, from which the application
/// builds a message in the user's language.
struct HelperFailure {
  /// The operation. The numbers are used on the wire, and must not change.
  enum class Operation {
    Answer = 0,
    Write = 1,
    Delete = 2,
    Read = 3,
    Load = 4,
    Unload = 5,
    Test = 6,
    Log = 7,
    Control = 8
  };

  Operation operation = Operation::Answer;
  Error cause;             ///< with the path of the file, if one was involved
  bool isWritten = false;  ///< the job's file has been written; a later step, such as loading, failed
};

/// The error in a reply. Helpers of this version send a `failure` or a code in `actionErrorDomain`; of other versions
/// it contains the parts that could be read.
struct HelperError {
  std::optional<std::string> domain = {};
  std::optional<propertylist::Integer> code = {};
  std::optional<std::string> description = {};  ///< in English, for logs
  std::optional<std::string> suggestion = {};
  std::optional<HelperFailure> failure = {};

  static HelperError of(ActionErrorCode code);
  /// With domain, code and description derived from the failure.
  static HelperError of(HelperFailure failure);

  /// The form on the wire. Absent members have no key.
  propertylist::Dictionary dictionary() const;
  /// Never fails. Ignores values of a wrong type, and a failure with an unknown operation or cause.
  static HelperError read(const propertylist::Dictionary& dictionary);
};

}  // namespace mirvel
