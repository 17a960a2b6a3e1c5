#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace mirvel::lint {

/// The index of the first word that a shell interprets as a script: the one after the `-c` of a shell, wherever the
/// shell is in the command (`/usr/bin/env sh -c ...`). The number of words if there is none.
std::size_t shellScriptStart(const std::vector<std::string>& words);

/// Whether a shell would interpret the word as an operator or a command substitution, whereas launchd passes it on
/// literally.
bool isShellSyntax(std::string_view word);

/// Whether the program's own arguments can look like operators: `find ... -exec ... ;` and `test a < b`.
bool takesOperators(const std::vector<std::string>& words);

}  // namespace mirvel::lint
