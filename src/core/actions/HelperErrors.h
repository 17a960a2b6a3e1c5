#pragma once

#include "core/ports/HelperConnection.h"

namespace mirvel {

class Interface;
class Localize;

/// Tells the user what an error reply of a helper says: the dictionary under "error".
void presentHelperError(const propertylist::Dictionary& error, const Localize& localize, Interface& interface);

/// Tells the user why the helper that acts as root wasn't started, and what to do.
void presentRefusal(HelperConnections::Refusal refusal, const Localize& localize, Interface& interface);

}  // namespace mirvel
