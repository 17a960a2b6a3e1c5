#pragma once

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// Warns about permissions that were probably typed in octal, which a property list reads as a decimal number (77 for
/// 077, 600 for 0600), and about a Umask that takes away the owner's own permissions.
void checkOctals(const Subject& subject, Findings& findings);

}  // namespace mirvel::lint
