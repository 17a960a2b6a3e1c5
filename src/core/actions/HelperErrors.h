#pragma once

#include "core/ports/HelperConnection.h"

namespace mirvel {

class Interface;
class Localize;
struct HelperError;

/// Shows the user the error in a helper's reply: what failed, the reason, and what to do about it. Errors without a
/// `HelperFailure` are shown by their domain and code.
///
///     “/Users/x/Library/LaunchAgents/a.plist” couldn’t be written
///     The disk is full. Free up some space and try again.
void presentHelperError(const HelperError& error, const Localize& localize, Interface& interface);

/// Shows the user why the helper that acts as root couldn't be started, and what to do about it.
void presentRefusal(HelperConnections::Refusal refusal, const Localize& localize, Interface& interface);

}  // namespace mirvel
