#pragma once

#include <string>

#include "core/propertylist/Value.h"
#include "core/support/Error.h"

namespace mirvel {

/// Error domains of a helper's answers. The first has the codes that the application words itself.
inline constexpr const char* actionErrorDomain = "MirvelActionErrorDomain";
inline constexpr const char* helperErrorDomain = "MirvelHelperErrorDomain";

enum class ActionErrorCode { NotConnected = 1, NotChanged = 4, NotChangedTryNewName = 5, NoLog = 7 };

/// The answer `{error}` with a code that needs no words.
plist::Dictionary errorReply(ActionErrorCode code);
/// That with a sentence on what failed and why, and one on what may help.
plist::Dictionary errorReply(const Error& error);
/// The first of these two sentences.
std::string sentenceOf(const Error& error);

}  // namespace mirvel
