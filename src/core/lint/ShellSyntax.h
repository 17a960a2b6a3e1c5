#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace mirvel::lint {

/// Where the arguments end that launchd alone hands over, and text for a shell begins: behind the `-c` of a shell,
/// wherever in the command it stands. Without one: the count of the words.
std::size_t shellScriptStart(const std::vector<std::string>& words);

/// Whether a shell would take the word for an operator or a command substitution, while launchd hands it to the program
/// as it stands.
bool isShellSyntax(std::string_view word);

/// Programs whose own arguments look like operators: `find ... -exec ... ;` and `test a < b`.
bool takesOperators(const std::vector<std::string>& words);

}  // namespace mirvel::lint
