#include "core/actions/MoveTarget.h"

#include <algorithm>
#include <system_error>

#include "core/support/Uuid.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr const char* extension = ".plist";

bool isTaken(const fs::path& path) {
  std::error_code failure;
  return fs::exists(path, failure);
}

}  // namespace

std::optional<URL> moveTarget(Kind kind, const URL& url, const Roots& roots) {
  const auto folder = kind.folderURL(roots);
  if (!folder) return std::nullopt;
  const fs::path target = *folder / url.lastPathComponent();
  if (!isTaken(target)) return URL::file(target);
  return URL::file(*folder / target.stem() / (makeUuid() + extension));
}

std::optional<URL> newFileURL(Kind kind, const std::string& name, const Roots& roots) {
  const auto folder = kind.folderURL(roots);
  if (!folder) return std::nullopt;
  std::string fileName = name;
  std::replace(fileName.begin(), fileName.end(), '/', '_');
  const fs::path plain = *folder / (fileName + extension);
  return URL::file(isTaken(plain) ? *folder / (fileName + makeUuid() + extension) : plain);
}

}  // namespace mirvel
