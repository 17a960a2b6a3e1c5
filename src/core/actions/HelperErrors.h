#pragma once

#include "core/propertylist/Value.h"

namespace mirvel {

class Interface;
class Localize;

/// Tells the user what an error reply of a helper says: the dictionary under "error".
void presentHelperError(const plist::Dictionary& error, const Localize& localize, Interface& interface);

}  // namespace mirvel
