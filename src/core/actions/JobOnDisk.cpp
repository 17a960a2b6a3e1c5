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
  const auto bytes = jobBytes(url);
  if (!bytes) return std::nullopt;
  const auto document = propertylist::read(*bytes);
  if (!document) return std::nullopt;
  propertylist::Value value = document->value();
  auto* dictionary = value.as<propertylist::Dictionary>();
  return dictionary ? std::optional(std::move(*dictionary)) : std::nullopt;
}

}  // namespace

std::optional<std::string> jobBytes(const URL& url) {
  auto bytes = readFile(url.path(), JobFolder::largestFile);
  return bytes ? std::optional(*std::move(bytes)) : std::nullopt;
}

std::optional<std::string> jobLabel(const URL& url) {
  const auto job = jobDictionary(url);
  const propertylist::Value* const label = job ? job->find("Label") : nullptr;
  const auto* text = label ? label->as<std::string>() : nullptr;
  return text ? std::optional(*text) : std::nullopt;
}

bool isEnabledOnDisk(const URL& url) {
  const auto job = jobDictionary(url);
  const propertylist::Value* const disabled = job ? job->find("Disabled") : nullptr;
  const bool* const isDisabled = disabled ? disabled->as<bool>() : nullptr;
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
