#pragma once

#include <string>
#include <string_view>

namespace mirvel {

/// A path to be shown to its user: "~/x" of what lies in the home folder.
std::string localizedDisplayPath(std::string_view path, std::string_view home);

}  // namespace mirvel
