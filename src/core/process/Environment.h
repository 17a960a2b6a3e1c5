#pragma once

#include <map>
#include <string>

namespace mirvel {

/// Environment variables by name. A value, so that it can be passed to a child process or made up in a test.
using Environment = std::map<std::string, std::string>;

/// The variables of this process. Not thread-safe while another thread changes them: call it at the start of the
/// program. Entries without `=` are skipped; of duplicates the first counts.
Environment processEnvironment();

}  // namespace mirvel
