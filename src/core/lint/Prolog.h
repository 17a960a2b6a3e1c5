#pragma once

#include <string_view>

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// What macOS passes over before the first element, and readers of well-formed XML refuse: something before the
/// declaration, quotes that aren't straight, a DOCTYPE without quotes. Looks only at text in UTF-8, with or without a
/// byte order mark.
void checkProlog(std::string_view bytes, Findings& findings);

}  // namespace mirvel::lint
