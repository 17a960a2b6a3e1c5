#include "core/actions/MoveTarget.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include "core/text/Bytes.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view extension = ".plist";
/// In bytes, without the extension: no usual file system has names of more than 255.
constexpr std::size_t longestName = 255 - extension.size();

/// By a link that leads nowhere, too.
bool isFree(const fs::path& path, const IsTaken& isTaken) {
  std::error_code failure;
  return fs::symlink_status(path, failure).type() == fs::file_type::not_found && !(isTaken && isTaken(path));
}

std::string withoutSlashes(std::string name) {
  std::replace(name.begin(), name.end(), '/', '_');
  return name;
}

/// A name that nothing has, beginning with this one.
fs::path withUuid(const fs::path& folder, std::string_view name) {
  const std::string uuid = makeUuid();
  return folder / (std::string(String::firstBytes(name, longestName - uuid.size())) + uuid).append(extension);
}

}  // namespace

Result<void> makeAgentsFolder(const Roots& roots) {
  const fs::path folder = *Kind(Kind::userAgent).folderURL(roots);
  std::error_code failure;
  if (fs::exists(folder, failure)) return {};
  fs::create_directories(folder, failure);
  if (!failure) {
    fs::permissions(folder, fs::perms::group_write | fs::perms::others_write, fs::perm_options::remove, failure);
  }
  if (failure) return systemError(failure.value(), "make the folder", folder.string());
  return {};
}

std::optional<URL> moveTarget(Kind kind, const URL& url, const Roots& roots, const IsTaken& isTaken) {
  const auto folder = kind.folderURL(roots);
  if (!folder) return std::nullopt;
  const fs::path target = *folder / url.lastPathComponent();
  return URL::file(isFree(target, isTaken) ? target : withUuid(*folder, target.stem().string()));
}

std::string jobFileName(const std::string& name) {
  return std::string(String::firstBytes(withoutSlashes(name), longestName));
}

std::optional<URL> newFileURL(Kind kind, const std::string& name, const Roots& roots, const IsTaken& isTaken) {
  const auto folder = kind.folderURL(roots);
  if (!folder) return std::nullopt;
  const std::string fileName = withoutSlashes(name);
  const bool serves = !fileName.empty() && fileName.size() <= longestName;
  const fs::path plain = *folder / std::string(fileName).append(extension);
  return URL::file(serves && isFree(plain, isTaken) ? plain : withUuid(*folder, fileName));
}

}  // namespace mirvel
