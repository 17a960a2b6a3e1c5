#include "core/actions/JobOnDisk.h"

#include <sys/stat.h>

#include <filesystem>
#include <system_error>

#include "core/catalogue/JobFolder.h"
#include "core/files/ReadFile.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Value.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

std::optional<propertylist::Dictionary> jobDictionary(const URL& url) {
  auto job = propertylist::readDictionary(url.path(), JobFolder::largestFile);
  return job ? std::optional(*std::move(job)) : std::nullopt;
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

bool stands(const URL& url) {
  std::error_code failure;
  return fs::exists(fs::symlink_status(url.path(), failure));
}

}  // namespace mirvel
