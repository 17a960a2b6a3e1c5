#include "core/files/DisplayPath.h"

namespace mirvel {

std::string localizedDisplayPath(std::string_view path, std::string_view home) {
  while (!home.empty() && home.back() == '/') home.remove_suffix(1);
  const bool isInside =
      !home.empty() && path.starts_with(home) && (path.size() == home.size() || path[home.size()] == '/');
  return isInside ? "~" + std::string(path.substr(home.size())) : std::string(path);
}

}  // namespace mirvel
