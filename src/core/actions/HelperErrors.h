#pragma once

#include "core/ports/HelperConnection.h"

namespace mirvel {

class Interface;
class Localize;
struct HelperError;

/// Shows the error of a helper's reply to the user.
void presentHelperError(const HelperError& error, const Localize& localize, Interface& interface);

/// Shows the user why the helper that acts as root wasn't started, and what to do.
void presentRefusal(HelperConnections::Refusal refusal, const Localize& localize, Interface& interface);

}  // namespace mirvel
