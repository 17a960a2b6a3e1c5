#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// Warns about unknown keys (with a suggestion if one is close), deprecated keys, an empty label, misspelt values of
/// keys that accept a few fixed words, such as ProcessType, and impossible names of environment variables.
void checkKeys(const Subject& subject, Findings& findings);

/// Warns about one unknown key among its `siblings` and, if it is known which one was meant, offers to rename it.
void warnOfUnknownKey(const jobfile::OpaqueValue::Path& steps, const std::string& keyPath,
                      std::optional<std::string_view> meant, const propertylist::Dictionary& siblings,
                      Findings& findings);

}  // namespace mirvel::lint
