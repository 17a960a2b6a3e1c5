#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// Checks the bytes of a job file against launchd.plist(5) and returns all findings in file order; empty if there are
/// none. Accepts any bytes: a file that can't be read as a property list yields one error.
/// Without the kind of the job, what depends on it isn't checked.
std::vector<Finding> lint(std::string_view bytes, const TargetMachine& machine, std::optional<Kind> kind = {});

/// Whether any finding is an error.
bool hasErrors(const std::vector<Finding>& findings);

}  // namespace mirvel::lint
