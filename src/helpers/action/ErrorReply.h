#pragma once

#include <string>

#include "core/actions/ActionError.h"
#include "core/propertylist/Value.h"
#include "core/support/Error.h"

namespace mirvel {

/// The domain of errors that bring their words along.
inline constexpr const char* helperErrorDomain = "MirvelHelperErrorDomain";

/// The answer `{error}` with a code that needs no words.
plist::Dictionary errorReply(ActionErrorCode code);
/// That with a sentence on what failed and why, and one on what may help.
plist::Dictionary errorReply(const Error& error);
/// The first of these two sentences.
std::string sentenceOf(const Error& error);

}  // namespace mirvel
