#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/base/Result.h"

namespace mirvel {

/// Names and values, without repeated names.
using Variables = std::vector<std::pair<std::string, std::string>>;

/// Parses lines of `NAME=value` as a shell reads assignments: `export` before the name, blank lines and comments are
/// skipped, quotes and backslashes are removed, and a quoted value can have several lines. Of two lines with the same
/// name, the last one counts. Nothing is expanded, so `$HOME` stays as it is. Fails with `Malformed` and the line at
/// the first one that isn't an assignment, such as `A=b c`, in which the shell would take `c` for a command.
Result<Variables> parseEnvironment(std::string_view text);

}  // namespace mirvel
