#pragma once

#include <functional>

#include "helpers/action/RequestHandler.h"

namespace mirvel {

/// Answers the requests that come over a socket, one after the other and in their order, until the peer hangs up, asks
/// for the end, or breaks the rules, which is the error.
Result<void> serve(int socket, const std::function<propertylist::Dictionary(const propertylist::Dictionary&)>& handle,
                   const std::function<bool()>& isDone);

}  // namespace mirvel
