#pragma once

#include <string>

#include "core/base/Result.h"
#include "ctl/Subcommand.h"

namespace mirvel::ctl {

/// Reads a file, or the standard input for `-`, up to the maximum size of a property list. The error doesn't contain
/// the file name.
Result<std::string> readInput(const std::string& file, const Context& context);

/// The name of the file for messages.
std::string inputName(const std::string& file);

/// The error message for a file in one line, safe for a terminal.
std::string errorLine(const std::string& file, Error error);

}  // namespace mirvel::ctl
