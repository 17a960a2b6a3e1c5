#include "helpers/host/JobReports.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <set>
#include <system_error>

#include "core/files/ReadFile.h"
#include "core/files/RegularFile.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "core/text/Bytes.h"
#include "core/text/Strings.h"

namespace mirvel::host {

namespace fs = std::filesystem;
using namespace std::chrono;

namespace {

constexpr const char* reportExtension = ".plist";
constexpr const char* unfinishedExtension = ".new";
constexpr const char* damagedExtension = ".damaged";
constexpr std::size_t largestReport = std::size_t{1} << 20U;

/// A label can contain characters that a file name can't. Where two labels could have the same file name, on a disk
/// that ignores case or because a name is too long, it ends with a hash.
std::string reportName(const std::string& label, bool isTest) {
  constexpr std::size_t longest = 150, hashSize = 16;
  std::string name = String::percentEncoded(label, "-_.");
  const bool isAmbiguous =
      name.size() > longest || std::any_of(name.begin(), name.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
  if (name.starts_with('.')) name.replace(0, 1, "%2e");
  if (isAmbiguous) {
    name = name.substr(0, longest) + '~' + toHex(sha256(label).value_or(label)).substr(0, hashSize);
  }
  return name + (isTest ? "~test" : "") + reportExtension;
}

Result<void> makeFolder(const fs::path& folder, mode_t mode) {
  struct stat status {};
  if (::lstat(folder.c_str(), &status) == 0) return {};
  if (::mkdir(folder.c_str(), mode) != 0 && errno != EEXIST) return systemError(errno, "create the folder", folder);
  if (::chmod(folder.c_str(), mode) != 0)
    return systemError(errno, "set the mode of", folder);  // whatever the umask is
  return {};
}

Result<void> makePublicFolder(const fs::path& folder) {
  fs::path path;
  for (const fs::path& part : folder) {
    path /= part;
    if (auto made = makeFolder(path, 0755); !made) return made;
  }
  return {};
}

Result<void> writeWhole(int file, std::string_view bytes, const fs::path& path) {
  const ssize_t written = ::write(file, bytes.data(), bytes.size());
  if (written == static_cast<ssize_t>(bytes.size())) return {};
  return systemError(written < 0 ? errno : ENOSPC, "write", path);
}

/// Whether everybody may read the file: it and, where it really is, all folders above it.
bool isForEverybody(const fs::path& file) {
  std::error_code failure;
  const fs::path real = fs::canonical(file, failure);
  if (failure) return false;
  struct stat status {};
  if (::stat(real.c_str(), &status) != 0 || (status.st_mode & S_IROTH) == 0) return false;
  for (fs::path folder = real.parent_path();; folder = folder.parent_path()) {
    if (::stat(folder.c_str(), &status) != 0 || (status.st_mode & S_IXOTH) == 0) return false;
    if (folder == folder.parent_path()) return true;
  }
}

/// The report without what only readers of the job file may know, and without the path of a test: others may pass
/// through its folder, whose name they can't guess.
JobReport publicPartOf(JobReport report) {
  const bool isPublic = isForEverybody(report.path);
  for (RunReport& run : report.runs) {
    if (!isPublic && run.end) run.end->subject.clear();
  }
  if (report.isTest) report.path.clear();
  return report;
}

}  // namespace

// The folder is opened first, and everything happens relative to it, so that nobody can redirect it by a link.
Result<FileDescriptor> JobReports::open() const {
  FileDescriptor folder(::open(m_folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!folder) return systemError(errno, "open", m_folder);
  struct stat status {};
  if (::fstat(folder.number(), &status) != 0) return systemError(errno, "examine", m_folder);
  if (status.st_uid != ::geteuid() || (status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
    return Error{
        .code = Error::Code::NotPermitted, .message = "others can write to the folder of reports", .file = m_folder};
  }
  return folder;
}

Result<std::optional<JobReports::Published>> JobReports::read(const std::string& label, bool isTest) {
  const std::string name = reportName(label, isTest);
  auto found = readFile(name);
  if (!found) noteFailure(found.error());
  if (!found || !*found || (*found)->report.label == label) return found;
  setAside(name, {.code = Error::Code::Malformed, .message = "it is the report of another job"});
  return std::optional<Published>();
}

Result<std::optional<JobReports::Published>> JobReports::readFile(const std::string& name) {
  const auto folder = open();
  if (!folder && folder.error().code == Error::Code::NotFound) return std::optional<Published>();
  if (!folder) return folder.error();
  const fs::path path = m_folder / name;
  const FileDescriptor file(::openat(folder->number(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!file && errno == ENOENT) return std::optional<Published>();
  struct stat status {};
  if (!file || ::fstat(file.number(), &status) != 0) return systemError(errno, "read", path);
  const auto bytes = mirvel::readFile(file.number(), largestReport, path);
  if (!bytes && bytes.error().code != Error::Code::LimitExceeded) return bytes.error();
  const auto dictionary = bytes ? propertylist::readDictionary(*bytes) : bytes.error();
  auto report = dictionary ? JobReport::read(*dictionary) : dictionary.error();
  if (report) return std::optional(Published{*std::move(report), sys_seconds(seconds(status.st_mtime))});
  setAside(name, report.error());
  return std::optional<Published>();
}

void JobReports::setAside(const std::string& name, Error damage) {
  const fs::path path = m_folder / name;
  fs::path rescue = path;
  std::error_code failure;
  for (int number = 1; number == 1 || fs::exists(rescue, failure); ++number) {
    rescue = path.string() + damagedExtension + '-' + std::to_string(number);
  }
  fs::rename(path, rescue, failure);
  damage.file = path;
  damage.message += failure ? "; it can't be renamed" : "; the runs so far are kept as " + rescue.string();
  m_troubles.push_back(std::move(damage));
}

Result<void> JobReports::write(const JobReport& report) {
  auto written = replace(m_readers == Readers::Everyone ? publicPartOf(report) : report);
  if (!written) noteFailure(written.error());
  if (written) m_isFailing = false;
  return written;
}

void JobReports::noteFailure(const Error& error) {
  if (!std::exchange(m_isFailing, true)) m_troubles.push_back(error);
}

Result<void> JobReports::replace(const JobReport& report) {
  const bool isPublic = m_readers == Readers::Everyone;
  // Not the ancestors of a user's folder: if the machine below it is being deleted, it must not come back.
  if (auto made = isPublic ? makePublicFolder(m_folder) : makeFolder(m_folder, 0700); !made) return made;
  const auto folder = open();
  if (!folder) return folder.error();
  if (auto marked = mark(folder->number()); !marked) noteFailure(marked.error());
  const std::string name = reportName(report.label, report.isTest), fresh = name + unfinishedExtension;
  ::unlinkat(folder->number(), fresh.c_str(), 0);  // left by a host that was killed
  constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  const FileDescriptor file(::openat(folder->number(), fresh.c_str(), flags, 0600));
  if (!file) return systemError(errno, "write", m_folder / fresh);
  auto written = writeWhole(file.number(), propertylist::writeBinary(report.write()), m_folder / fresh);
  if (written && isPublic && ::fchmod(file.number(), 0644) != 0)
    written = systemError(errno, "publish", m_folder / name);
  if (written && ::renameat(folder->number(), fresh.c_str(), folder->number(), name.c_str()) != 0) {
    written = systemError(errno, "write", m_folder / name);
  }
  if (!written) ::unlinkat(folder->number(), fresh.c_str(), 0);
  return written;
}

/// The mark may have been deleted, or replaced by a host that has ended since. That of a host that lives is left alone:
/// one of the two is about to end.
Result<void> JobReports::mark(int folder) {
  if (m_mark.isIn(folder) || HostMark::in(folder) == HostMark::State::Held) return {};
  auto mark = HostMark::set(folder, m_folder, m_readers == Readers::Everyone ? 0644 : 0600);
  if (!mark) return mark.error();
  m_mark = *std::move(mark);
  return {};
}

void JobReports::keepMark() {
  const auto folder = open();
  auto marked = folder ? mark(folder->number()) : Result<void>();
  if (!marked) noteFailure(marked.error());
}

void JobReports::remove(const std::string& label, bool isTest) {
  const auto folder = open();
  if (folder) ::unlinkat(folder->number(), reportName(label, isTest).c_str(), 0);
}

bool JobReports::contains(const std::string& label, bool isTest) const {
  std::error_code failure;
  return fs::exists(fs::symlink_status(m_folder / reportName(label, isTest), failure));
}

std::vector<JobReport> JobReports::tidy(sys_seconds now, const std::vector<std::string>& loaded) {
  std::vector<JobReport> outdated;
  if (!open()) return outdated;
  keepMark();
  std::set<std::string> current;
  for (const std::string& label : loaded) current.insert(reportName(label, false));
  std::vector<std::string> names;  // a copy, since files are renamed and deleted meanwhile
  std::error_code failure;
  for (fs::directory_iterator entry(m_folder, failure), end; !failure && entry != end; entry.increment(failure)) {
    if (!current.contains(entry->path().filename())) names.push_back(entry->path().filename());
  }
  for (const std::string& name : names) {
    const bool isReport = fs::path(name).extension() == reportExtension;
    auto found = isReport ? readFile(name) : std::optional<Published>();
    JobReport* const report = found && *found ? &(*found)->report : nullptr;
    const bool isTest = report && report->isTest, isDeleted = isTest || isUseless(name, now);
    if (isDeleted) ::unlink((m_folder / name).c_str());
    if (isTest || (report && !isDeleted && (report->isLoaded || report->process != 0))) {
      outdated.push_back(std::move(*report));
    }
  }
  return outdated;
}

bool JobReports::isUseless(const std::string& name, sys_seconds now) const {
  const fs::path path = m_folder / name;
  struct stat status {};
  const bool isOld = ::lstat(path.c_str(), &status) == 0 && sys_seconds(seconds(status.st_mtime)) < now - keptFor;
  return isOld || path.extension() == unfinishedExtension;
}

}  // namespace mirvel::host
