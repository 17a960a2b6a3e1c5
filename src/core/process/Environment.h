#pragma once

#include <map>
#include <string>

namespace mirvel {

/// Environment variables by name.
using Environment = std::map<std::string, std::string>;

/// Those of this process. Call it at the start of the program, while there is one thread.
Environment processEnvironment();

}  // namespace mirvel
