#pragma once

#include <string_view>

namespace mirvel {

/// Whether the value of an environment variable with this name should be concealed, because a word of the name says so:
/// "GITHUB_TOKEN", "dbPassword" and "AWS_SECRET_ACCESS_KEY", but not "KEYBOARD" or "MONKEY". Ignores case.
bool looksSecret(std::string_view name);

}  // namespace mirvel
