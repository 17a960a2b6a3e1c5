#include "helpers/privileged/Installed.h"

namespace mirvel {

Result<void> removeInstalled(const std::vector<std::filesystem::path>& paths) {
  Result<void> result;
  for (const auto& path : paths) {
    std::error_code failure;
    std::filesystem::remove_all(path, failure);
    if (failure && result) result = systemError(failure.value(), "delete", path.string());
  }
  return result;
}

}  // namespace mirvel
