#pragma once

#include <string_view>

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// Warns about defects before the root element that macOS tolerates but conforming XML parsers reject: text before the
/// declaration, typographic quotes, a DOCTYPE without quotes. Only for UTF-8, with or without a byte-order mark.
void checkProlog(std::string_view bytes, Findings& findings);

}  // namespace mirvel::lint
