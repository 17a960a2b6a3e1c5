#include "helpers/privileged/Uninstall.h"

#include <system_error>

#include "helpers/hostdata/HostClient.h"
#include "helpers/privileged/ActingAs.h"

namespace mirvel {

namespace {

/// Removes files, and folders with their contents, without following links. Missing ones are ignored. Continues after a
/// failure, and returns the first one.
Result<void> removeInstalled(const std::vector<std::filesystem::path>& paths) {
  Result<void> result;
  for (const auto& path : paths) {
    std::error_code failure;
    std::filesystem::remove_all(path, failure);
    if (failure && result) result = systemError(failure.value(), "delete", path.string());
  }
  return result;
}

}  // namespace

Result<void> uninstall(const Installation& installation, JobHost& ownHost) {
  if (auto ended = ownHost.quit(); !ended) return ended;
  const ActingAs acting(installation.user);
  if (!acting) {
    return Error{.code = Error::Code::NotPermitted, .message = "the helper can't act with the rights of the user"};
  }
  if (installation.host) {
    if (auto ended = HostClient(*installation.host).quit(); !ended) return ended;
  }
  return removeInstalled(installation.installed);
}

}  // namespace mirvel
