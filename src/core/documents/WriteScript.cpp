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

/// The file itself, if the path has become a link.
fs::path targetOf(const fs::path& path) {
  std::error_code failure;
  fs::path target = fs::canonical(path, failure);
  return failure ? path : target;
}

/// Null if the file can be replaced without losing anything, and if it doesn't exist.
std::optional<OverwriteReason> reasonToOverwrite(const fs::path& path) {
  struct stat file {};
  if (::stat(path.c_str(), &file) != 0) return std::nullopt;
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

/// What has happened to the file, if it isn't the expected one.
std::optional<ScriptWritten> changeOf(FileState found, const FileState& expected) {
  const bool isSame = found.digest == expected.digest && found.isLink == expected.isLink;
  if (isSame && (found.digest.empty() || found.isSameFile(expected))) return std::nullopt;
  if (found.digest.empty()) found.mode = expected.mode;  // which a new file gets
  return ScriptWritten{.kind = ScriptWritten::Kind::Changed, .state = std::move(found)};
}

/// What prevents replacing the file as it is now; null if nothing does.
std::optional<ScriptWritten> obstacleTo(const ScriptWrite& request) {
  auto found = stateOf(request.path);
  if (!found) return failed(found.error());
  if (auto change = changeOf(*std::move(found), request.expected)) return change;
  const auto reason = reasonToOverwrite(targetOf(request.path));
  if (!reason) return std::nullopt;
  return ScriptWritten{.kind = ScriptWritten::Kind::Overwrites, .reason = *reason};
}

ScriptWritten overwriteFile(const ScriptWrite& request, std::string_view bytes) {
  const fs::path target = targetOf(request.path);
  auto processes = processesWith(target);
  if (!processes.empty()) return {.kind = ScriptWritten::Kind::InUse, .processes = std::move(processes)};
  const FileDescriptor file(::open(target.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
  if (!file) return failed(systemError(errno, "write", target.string()));
  const auto old = readFile(file.number(), std::numeric_limits<std::size_t>::max(), target);
  if (!old) return failed(old.error());
  auto found = stateOf(file.number(), *old, request.path);
  if (!found) return failed(found.error());
  if (auto change = changeOf(*found, request.expected)) return *std::move(change);
  const int failure = overwrite(file.number(), bytes, *old);
  if (failure != 0) return failed(systemError(failure, "write", target.string()));
  return {.kind = ScriptWritten::Kind::Written, .state = *std::move(found)};
}

/// The steps of replacing a script. When the new file is complete and on the disk, the old one is compared once more.
class ReplacingCalls final : public FileCalls {
 public:
  ReplacingCalls(const ScriptWrite& request, FileCalls& calls) : m_request(request), m_calls(calls) {}

  /// The mode that a file is created with; one that is restored is private until it has its mode.
  mode_t mostOpen() const { return isRestored() ? privateFile : newFileMode; }
  /// What has prevented the last step, or the state of the new file after it.
  const std::optional<ScriptWritten>& outcome() const { return m_outcome; }

  int create(int folder, const char* name, mode_t mode) override { return m_calls.create(folder, name, mode); }
  ssize_t write(int file, const char* bytes, std::size_t count) override { return m_calls.write(file, bytes, count); }
  int setMode(int file, mode_t mode) override { return m_calls.setMode(file, mode); }
  int sync(int fileOrFolder) override { return m_calls.sync(fileOrFolder); }
  int close(int file) override { return m_calls.close(file); }

  int rename(int folder, const char* from, const char* to) override {
    if (isRestored() && ::fchmodat(folder, from, m_request.expected.mode & 0777U, 0) != 0) return -1;
    struct stat status {};
    if (::fstatat(folder, from, &status, AT_SYMLINK_NOFOLLOW) != 0) return -1;
    m_outcome = obstacleTo(m_request);
    if (m_outcome) {
      errno = ECANCELED;
      return -1;
    }
    if (m_calls.rename(folder, from, to) != 0) return -1;
    m_outcome = ScriptWritten{.kind = ScriptWritten::Kind::Written,
                              .state = {.device = status.st_dev,
                                        .inode = status.st_ino,
                                        .mode = static_cast<mode_t>(status.st_mode & 07777U),
                                        .digest = {},
                                        .isLink = m_request.expected.isLink}};
    return 0;
  }

 private:
  bool isRestored() const { return m_request.expected.digest.empty() && m_request.expected.mode != 0; }

  const ScriptWrite& m_request;
  FileCalls& m_calls;
  std::optional<ScriptWritten> m_outcome;
};

ScriptWritten replace(const ScriptWrite& request, std::string_view bytes, FileCalls* calls) {
  FileCalls system;
  ReplacingCalls steps(request, calls ? *calls : system);
  const auto replaced = replaceFile(request.path, bytes, steps.mostOpen(), &steps);
  if (!steps.outcome()) return failed(replaced.error());
  ScriptWritten outcome = *steps.outcome();
  if (outcome.kind == ScriptWritten::Kind::Written && !replaced) outcome.error = replaced.error();
  return outcome;
}

/// Compares the file with what is expected, and writes if it is that.
ScriptWritten writeIfExpected(const ScriptWrite& request, std::string_view bytes, FileCalls* calls) {
  auto obstacle = obstacleTo(request);
  if (!obstacle) return replace(request, bytes, calls);
  const bool overwrites = request.mayOverwrite && obstacle->kind == ScriptWritten::Kind::Overwrites;
  return overwrites ? overwriteFile(request, bytes) : *std::move(obstacle);
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
  result.state.digest = sha256(encoded->bytes).value_or(std::string());
  result.form = TextForm::of(*request.text);
  return result;
}

}  // namespace mirvel
