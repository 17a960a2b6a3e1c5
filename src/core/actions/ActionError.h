#pragma once

namespace mirvel {

/// The domain of the errors whose code alone tells the application what to say.
inline constexpr const char* actionErrorDomain = "MirvelActionErrorDomain";

enum class ActionErrorCode { NotConnected = 1, NotChanged = 4, NotChangedTryNewName = 5, NoLog = 7 };

/// The domain of all others, whose code is that of the cause. See `HelperFailure`.
inline constexpr const char* helperErrorDomain = "MirvelHelperErrorDomain";

}  // namespace mirvel
