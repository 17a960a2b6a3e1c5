#include "core/actions/JobOnDisk.h"

#include <sys/stat.h>

#include <algorithm>
#include <string_view>
#include <system_error>

#include "core/catalogue/JobFolder.h"
#include "core/files/ReadFile.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Value.h"
#include "core/text/Bytes.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

std::optional<propertylist::Dictionary> jobDictionary(const URL& url) {
  auto job = propertylist::readDictionary(url.path(), JobFolder::largestFile);
  return job ? std::optional(*std::move(job)) : std::nullopt;
}

constexpr std::string_view extension = ".plist";
/// In bytes, without the extension: common file systems limit names to 255 bytes.
constexpr std::size_t longestName = 255 - extension.size();

/// A broken link occupies a path too.
bool isFree(const fs::path& path, const IsTaken& isTaken) {
  std::error_code failure;
  return fs::symlink_status(path, failure).type() == fs::file_type::not_found && !(isTaken && isTaken(path));
}

std::string withoutSlashes(std::string name) {
  std::replace(name.begin(), name.end(), '/', '_');
  return name;
}

/// A path that isn't in use; its name starts with as much of `name` as fits.
fs::path withUuid(const fs::path& folder, std::string_view name) {
  const std::string uuid = makeUuid();
  return folder / (std::string(String::firstBytes(name, longestName - uuid.size())) + uuid).append(extension);
}

}  // namespace

std::optional<std::string> jobBytes(const URL& url) {
  auto bytes = readFile(url.path(), JobFolder::largestFile);
  return bytes ? std::optional(*std::move(bytes)) : std::nullopt;
}

std::optional<std::string> jobLabel(const URL& url) {
  const auto job = jobDictionary(url);
  const auto* const label = job ? job->get<std::string>("Label") : nullptr;
  return label ? std::optional(*label) : std::nullopt;
}

bool isEnabledOnDisk(const URL& url) {
  const auto job = jobDictionary(url);
  const bool* const isDisabled = job ? job->get<bool>("Disabled") : nullptr;
  return job && !(isDisabled && *isDisabled);
}

std::optional<int> restrictedMode(const URL& url) {
  constexpr mode_t readByAll = 0444;
  struct stat status {};
  if (::stat(url.path().c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  if ((status.st_mode & readByAll) == readByAll) return std::nullopt;
  return static_cast<int>(status.st_mode & 0777U);
}

bool isGone(const URL& url) {
  std::error_code failure;
  return fs::symlink_status(url.path(), failure).type() == fs::file_type::not_found;
}

bool isPresent(const URL& url) {
  std::error_code failure;
  return fs::exists(fs::symlink_status(url.path(), failure));
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
  const bool isUsable = !fileName.empty() && fileName.size() <= longestName;
  const fs::path plain = *folder / std::string(fileName).append(extension);
  return URL::file(isUsable && isFree(plain, isTaken) ? plain : withUuid(*folder, fileName));
}

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

}  // namespace mirvel
