#pragma once

#include <string_view>
#include <vector>

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// Everything that is wrong, or looks wrong, with the bytes of a job file, in the order of the file; nothing for a good
/// one. Keys and their meaning are those of launchd.plist(5).
std::vector<Finding> lint(std::string_view bytes, const Surroundings& surroundings);

bool hasErrors(const std::vector<Finding>& findings);

}  // namespace mirvel::lint
