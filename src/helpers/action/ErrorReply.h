#pragma once

#include "core/actions/ActionError.h"
#include "core/actions/HelperFailure.h"
#include "core/propertylist/Value.h"

namespace mirvel {

/// The answer `{error}` with a code that says all.
plist::Dictionary errorReply(ActionErrorCode code);
/// That with what failed and why, in its parts.
plist::Dictionary errorReply(const HelperFailure& failure);

}  // namespace mirvel
