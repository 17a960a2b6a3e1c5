#pragma once

namespace mirvel {

/// The domain of the errors that the application words itself, by their code.
inline constexpr const char* actionErrorDomain = "MirvelActionErrorDomain";

enum class ActionErrorCode { NotConnected = 1, NotChanged = 4, NotChangedTryNewName = 5, NoLog = 7 };

}  // namespace mirvel
