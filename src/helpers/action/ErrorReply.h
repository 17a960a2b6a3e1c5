#pragma once

#include "core/actions/HelperFailure.h"
#include "core/propertylist/Value.h"

namespace mirvel {

/// The answer `{error}` with a code that says all.
propertylist::Dictionary errorReply(ActionErrorCode code);
/// That with what failed and why, in its parts.
propertylist::Dictionary errorReply(const HelperFailure& failure);

}  // namespace mirvel
