#pragma once

#include <string>
#include <vector>

#include "core/support/Environment.h"

namespace mirvel {

/// Arguments or variables as exec(3) takes them: a pointer to each text, which must stay as it is, and a null.
std::vector<char*> execPointers(std::vector<std::string>& texts);

/// "name=value" for each variable.
std::vector<std::string> execVariables(const Environment& environment);

}  // namespace mirvel
