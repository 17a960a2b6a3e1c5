#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>

#include "core/documents/ScriptFile.h"
#include "core/files/ExtendedAttributes.h"
#include "core/files/ReadFile.h"
#include "core/files/ReplaceFile.h"
#include "core/process/FileDescriptor.h"
#include "core/process/FileReaders.h"
#include "core/text/Bytes.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

bool isOwnGroup(gid_t group) {
  if (group == ::getegid()) return true;
  std::vector<gid_t> groups(static_cast<std::size_t>(std::max(::getgroups(0, nullptr), 0)));
  const int count = ::getgroups(static_cast<int>(groups.size()), groups.data());
  groups.resize(static_cast<std::size_t>(std::max(count, 0)));
  return std::find(groups.begin(), groups.end(), group) != groups.end();
}

/// Null if the file can be replaced without losing anything.
std::optional<OverwriteReason> reasonToOverwrite(const fs::path& path, const struct stat& file) {
  if (file.st_nlink > 1) return OverwriteReason::Links;
  const bool isRoot = ::geteuid() == 0;
  const bool isSpecial = (file.st_mode & static_cast<mode_t>(S_ISUID | S_ISGID | S_ISVTX)) != 0;
  if (isSpecial || (!isRoot && (file.st_uid != ::geteuid() || !isOwnGroup(file.st_gid)))) {
    return OverwriteReason::Permissions;
  }
  if (::access(path.parent_path().c_str(), W_OK | X_OK) != 0) return OverwriteReason::Folder;
  return std::nullopt;
}

/// Writes everything at this offset. Returns 0 or an errno value.
int writeAt(int file, std::string_view bytes, std::size_t offset) {
  while (!bytes.empty()) {
    const ssize_t count = ::pwrite(file, bytes.data(), bytes.size(), static_cast<off_t>(offset));
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return count < 0 ? errno : EIO;
    offset += static_cast<std::size_t>(count);
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return 0;
}

int setSize(int file, std::size_t size) {
  return ::ftruncate(file, static_cast<off_t>(size)) == 0 ? 0 : errno;
}

/// Overwrites the content of a file, and restores the old one if that fails. What is beyond the old end is written
/// first, since only that needs more space on the disk.
int overwrite(int file, std::string_view bytes, std::string_view old) {
  const std::size_t common = std::min(bytes.size(), old.size());
  int failure = writeAt(file, bytes.substr(common), common);
  if (failure == 0 && syncToDevice(file) != 0) failure = errno;
  if (failure == 0) failure = writeAt(file, bytes.substr(0, common), 0);
  if (failure == 0) failure = setSize(file, bytes.size());
  if (failure == 0 && syncToDevice(file) != 0) failure = errno;
  if (failure == 0) return 0;
  (void)writeAt(file, old, 0);  // the first failure is the one to report
  (void)setSize(file, old.size());
  return failure;
}

ScriptWritten failed(Error error) {
  return {.kind = ScriptWritten::Kind::Failed, .error = std::move(error)};
}

ScriptWritten overwriteFile(const ScriptWrite& request, std::string_view bytes) {
  auto processes = processesWith(request.path);
  if (!processes.empty()) return {.kind = ScriptWritten::Kind::InUse, .processes = std::move(processes)};
  const FileDescriptor file(::open(request.path.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
  if (!file) return failed(systemError(errno, "write", request.path.string()));
  const auto old = readFile(file.number(), std::numeric_limits<std::size_t>::max(), request.path);
  if (!old) return failed(old.error());
  if (sha256(*old) != request.expected.digest) {
    auto state = stateOf(request.path);
    if (!state) return failed(state.error());
    return {.kind = ScriptWritten::Kind::Changed, .state = *std::move(state)};
  }
  const int failure = overwrite(file.number(), bytes, *old);
  if (failure != 0) return failed(systemError(failure, "write", request.path.string()));
  return {.kind = ScriptWritten::Kind::Written};
}

ScriptWritten replace(const ScriptWrite& request, std::string_view bytes, FileCalls* calls) {
  if (auto written = replaceFile(request.path, bytes, newFileMode, calls); !written) return failed(written.error());
  const bool isRestored = request.expected.digest.empty() && request.expected.mode != 0;
  if (isRestored && ::chmod(request.path.c_str(), request.expected.mode & 0777U) != 0) {
    return failed(systemError(errno, "restore the mode of", request.path.string()));
  }
  return {.kind = ScriptWritten::Kind::Written};
}

/// Compares the file with what is expected, and writes at once if it is that.
ScriptWritten writeIfExpected(const ScriptWrite& request, std::string_view bytes, FileCalls* calls) {
  auto found = stateOf(request.path);
  if (!found) return failed(found.error());
  if (found->digest != request.expected.digest) {
    return {.kind = ScriptWritten::Kind::Changed, .state = *std::move(found)};
  }
  struct stat status {};
  if (::lstat(request.path.c_str(), &status) != 0) return replace(request, bytes, calls);
  const auto reason = reasonToOverwrite(request.path, status);
  if (!reason) return replace(request, bytes, calls);
  if (!request.mayOverwrite) return {.kind = ScriptWritten::Kind::Overwrites, .reason = *reason};
  return overwriteFile(request, bytes);
}

}  // namespace

ScriptWritten writeScript(const ScriptWrite& request, FileCalls* calls) {
  auto encoded = encode(*request.text, request.encoding);
  if (!encoded) return failed(encoded.error());
  if (encoded->firstUnencodable) {
    return {.kind = ScriptWritten::Kind::Unencodable, .unencodable = *std::move(encoded->firstUnencodable)};
  }
  ScriptWritten result = writeIfExpected(request, encoded->bytes, calls);
  if (result.kind != ScriptWritten::Kind::Written) return result;
  // Best effort: without the attribute, the encoding is guessed.
  (void)setExtendedAttribute(request.path, textEncodingAttributeName, attributeValue(request.encoding));
  struct stat status {};
  if (::stat(request.path.c_str(), &status) != 0) return failed(systemError(errno, "find", request.path.string()));
  result.state = {.device = status.st_dev,
                  .inode = status.st_ino,
                  .mode = static_cast<mode_t>(status.st_mode & 07777U),
                  .digest = sha256(encoded->bytes).value_or(std::string())};
  result.form = TextForm::of(*request.text);
  return result;
}

}  // namespace mirvel
