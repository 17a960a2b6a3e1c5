#pragma once

#include <string>

namespace mirvel {

/// A new random UUID (RFC 9562, version 4) in its standard text form, in upper case.
std::string makeUuid();

}  // namespace mirvel
