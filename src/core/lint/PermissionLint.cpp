#include "core/lint/PermissionLint.h"

#include "core/files/FileTrust.h"

namespace mirvel::lint {

std::vector<Finding> checkPermissions(const std::filesystem::path& file, uid_t user) {
  const auto trusted = checkTrust(file, user);
  // Other errors are reported when the file is read.
  if (trusted || trusted.error().code != Error::Code::NotTrusted) return {};
  return {{.severity = Severity::Warning,
           .message = "can't be loaded: " + trusted.error().text(),
           .clause = clause("launchd doesn’t load the job, because others could change %@", {trusted.error().file})}};
}

}  // namespace mirvel::lint
