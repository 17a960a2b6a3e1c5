#pragma once

#include <string>

#include "core/base/Result.h"
#include "ctl/Command.h"

namespace mirvel::ctl {

/// The bytes of a file, or of the standard input for `-`, within the size that a property list may have. The error
/// doesn't name the file.
Result<std::string> readInput(const std::string& file, const Context& context);

/// What the file is called in messages.
std::string inputName(const std::string& file);

/// The whole line for an error with a file, safe for a terminal.
std::string errorLine(const std::string& file, Error error);

}  // namespace mirvel::ctl
