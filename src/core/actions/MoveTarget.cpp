#include "core/actions/MoveTarget.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include "core/support/Uuid.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view extension = ".plist";
/// In bytes, without the extension: no usual file system has names of more than 255.
constexpr std::size_t longestName = 255 - extension.size();

bool isTaken(const fs::path& path) {
  std::error_code failure;
  return fs::exists(path, failure);
}

std::string withoutSlashes(std::string name) {
  std::replace(name.begin(), name.end(), '/', '_');
  return name;
}

/// At most so many bytes, and no part of a character.
std::string shortened(std::string text, std::size_t size) {
  if (text.size() <= size) return text;
  const auto isContinuation = [&text](std::size_t at) {
    return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
  };
  while (size > 0 && isContinuation(size)) --size;
  text.resize(size);
  return text;
}

}  // namespace

std::optional<URL> moveTarget(Kind kind, const URL& url, const Roots& roots) {
  const auto folder = kind.folderURL(roots);
  if (!folder) return std::nullopt;
  const fs::path target = *folder / url.lastPathComponent();
  if (!isTaken(target)) return URL::file(target);
  return URL::file(*folder / target.stem() / (makeUuid().append(extension)));
}

std::string jobFileName(const std::string& name) {
  return shortened(withoutSlashes(name), longestName);
}

std::optional<URL> newFileURL(Kind kind, const std::string& name, const Roots& roots) {
  const auto folder = kind.folderURL(roots);
  if (!folder) return std::nullopt;
  const std::string fileName = withoutSlashes(name);
  const bool serves = !fileName.empty() && fileName.size() <= longestName;
  const fs::path plain = *folder / std::string(fileName).append(extension);
  if (serves && !isTaken(plain)) return URL::file(plain);
  const std::string uuid = makeUuid();
  return URL::file(*folder / (shortened(fileName, longestName - uuid.size()) + uuid).append(extension));
}

}  // namespace mirvel
