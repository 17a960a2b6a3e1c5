#pragma once

#include <string>

#include "core/ports/HelperConnection.h"

namespace mirvel {

class Interface;
class Localize;
struct HelperError;

/// A failure in words.
struct HelperMessage {
  std::string message;          ///< what failed, without full stop
  std::string informativeText;  ///< the reason, and what to do about it

  bool operator==(const HelperMessage&) const = default;
};

/// Describes the error in a helper's reply. Errors without a `HelperFailure` are described by their domain and code.
///
///     “/Users/x/Library/LaunchAgents/a.plist” couldn’t be written
///     The disk is full. Free up some space and try again.
HelperMessage helperMessage(const HelperError& error, const Localize& localize);
/// Shows it to the user.
void presentHelperError(const HelperError& error, const Localize& localize, Interface& interface);

/// Shows the user why the helper that acts as root couldn't be started, and what to do about it.
void presentRefusal(HelperConnections::Refusal refusal, const Localize& localize, Interface& interface);

}  // namespace mirvel
