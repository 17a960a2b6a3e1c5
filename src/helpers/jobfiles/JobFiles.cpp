#include "helpers/jobfiles/JobFiles.h"

#include <sys/stat.h>

#include <cerrno>

#include "core/catalogue/JobFolder.h"
#include "core/propertylist/Reader.h"

namespace mirvel {

bool JobFiles::isForJobs(const std::filesystem::path& file) const {
  std::error_code failure;
  return !std::filesystem::is_directory(file, failure);
}

Result<void> JobFiles::writeThenRemove(const std::filesystem::path& from, const std::filesystem::path& to,
                                       std::string_view content, mode_t mostOpen) {
  namespace fs = std::filesystem;
  const auto before = read(to);
  std::error_code failure;
  const bool isThere = fs::exists(fs::symlink_status(to, failure));
  const bool isTarget = fs::is_symlink(from, failure) && fs::equivalent(from, to, failure);
  // A link may be replaced by its own target: then the file at the new path is the one that is being moved.
  if (isThere && !isTarget) return systemError(EEXIST, "write", to.string());
  if (auto written = write(to, content, mostOpen); !written) return written;
  auto removed = remove(from);
  if (removed) return {};
  // Both files would be loaded at the next start, so the new one must not remain. The target of a link was there
  // before: it gets back its content, and is never removed.
  const auto takenBack = !isTarget ? remove(to) : before ? write(to, *before, mostOpen) : before.error();
  if (takenBack) return removed;
  Error error = removed.error();
  error.message += "; the new file " + to.string() + " couldn't be removed";
  return error;
}

Result<void> checkLabel(std::string_view label) {
  constexpr std::size_t longest = 1024;
  const auto refuse = [](const char* why) { return Error{.code = Error::Code::BadArgument, .message = why}; };
  if (label.empty()) return refuse("an empty label names no job");
  if (label.size() > longest) return refuse("the label is too long");
  for (const char c : label) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) return refuse("the label holds a control character");
  }
  return {};
}

Result<std::string> labelOf(std::string_view content) {
  if (content.size() > JobFolder::largestFile) {
    return Error{.code = Error::Code::LimitExceeded, .message = "it is too large for a job file"};
  }
  const auto job = propertylist::readDictionary(content);
  if (!job) return job.error();
  const auto* const label = job->get<std::string>("Label");
  if (!label || label->empty()) {
    return Error{.code = Error::Code::MissingKey, .message = "it has no Label, which names a job"};
  }
  if (auto checked = checkLabel(*label); !checked) return checked.error();
  return *label;
}

bool mayBeLoadedFrom(const std::filesystem::path& loaded, const std::filesystem::path& file) {
  std::error_code failure;
  // Hosts remember the path from which a job was loaded, even after its file has been renamed.
  return !std::filesystem::exists(loaded, failure) ||
         std::filesystem::weakly_canonical(loaded, failure) == std::filesystem::weakly_canonical(file, failure);
}

bool isSameEntry(const std::filesystem::path& a, const std::filesystem::path& b) {
  struct stat first {
  }, second{};
  if (::lstat(a.c_str(), &first) != 0 || ::lstat(b.c_str(), &second) != 0) return false;
  return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

}  // namespace mirvel
