#include "helpers/action/TestFolder.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>
#include <utility>

#include "core/files/ReplaceFile.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "core/text/Bytes.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view prefix = "test-";
constexpr mode_t passable = 0711;  // others can open a file whose path they know, but not list the folder

/// With the name of the folder in this text, others can't guess the path of a file in it.
Result<std::string> randomName() {
  constexpr std::size_t size = 16;
  const auto bytes = randomBytes(size);
  if (!bytes) return Error{.code = Error::Code::Io, .message = "there are no random numbers"};
  return std::string(prefix) + toHex(*bytes);
}

FileDescriptor openFolder(const fs::path& path) {
  return FileDescriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

/// Opens the folder of the tests and locks it, so that no other process sees a folder in it that isn't locked yet.
Result<FileDescriptor> lockParent(const fs::path& parent) {
  FileDescriptor folder = openFolder(parent);
  struct stat status {};
  if (!folder || ::fstat(folder.number(), &status) != 0) return systemError(errno, "open the folder", parent);
  if (status.st_uid != ::geteuid() || (status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
    return Error{.code = Error::Code::NotPermitted,
                 .message = "others could change the files of a test in this folder",
                 .file = parent};
  }
  if (::flock(folder.number(), LOCK_EX) != 0) return systemError(errno, "lock the folder", parent);
  return folder;
}

void redirect(propertylist::Dictionary& job, const fs::path& pipe) {
  const auto* const root = job.get<std::string>("RootDirectory");
  const bool isElsewhere = ::geteuid() == 0 && root && !root->empty() && *root != "/";
  for (const char* const key : {"StandardOutPath", "StandardErrorPath"}) {
    isElsewhere ? (void)job.remove(key) : job.set(key, pipe.string());
  }
}

}  // namespace

Result<TestFolder> TestFolder::make(const fs::path& parent, std::string_view content) {
  if (auto made = makePrivateFolder(parent); !made) return made.error();
  const auto name = randomName();
  if (!name) return name.error();
  const auto parentLock = lockParent(parent);
  if (!parentLock) return parentLock.error();
  const fs::path path = parent / *name;
  if (::mkdir(path.c_str(), S_IRWXU) != 0) return systemError(errno, "make the folder", path);
  FileDescriptor lock = openFolder(path);
  if (!lock || ::flock(lock.number(), LOCK_EX | LOCK_NB) != 0) return systemError(errno, "lock the folder", path);
  TestFolder folder(path, std::move(lock));
  if (auto filled = folder.fill(content); !filled) {
    folder.remove();
    return filled.error();
  }
  return folder;
}

std::vector<TestFolder> TestFolder::leftIn(const fs::path& parent) {
  std::vector<TestFolder> result;
  const auto parentLock = lockParent(parent);
  if (!parentLock) return result;  // usually, because there has never been a test
  std::error_code failure;
  for (fs::directory_iterator entry(parent, failure), end; !failure && entry != end; entry.increment(failure)) {
    if (!entry->path().filename().string().starts_with(prefix)) continue;
    FileDescriptor lock = openFolder(entry->path());
    if (lock && ::flock(lock.number(), LOCK_EX | LOCK_NB) == 0) result.push_back({entry->path(), std::move(lock)});
  }
  return result;
}

Result<void> TestFolder::fill(std::string_view content) {
  auto job = propertylist::readDictionary(content);
  if (!job) return job.error();
  if (auto made = makePipe(); !made) return made;
  redirect(*job, pipe());
  const auto* const user = job->get<std::string>("UserName");
  if (user && ::geteuid() == 0) {
    if (auto admitted = admit(*user); !admitted) return admitted;
  }
  const auto text = propertylist::writeXml(*std::move(job));
  return text ? replaceFile(this->job(), *text, privateFile) : text.error();
}

Result<void> TestFolder::makePipe() {
  const std::string path = pipe();
  if (::mkfifo(path.c_str(), privateFile) != 0) return systemError(errno, "make the pipe", path);
  m_reader = FileDescriptor(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (m_reader) m_writer = FileDescriptor(::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
  return m_reader && m_writer ? Result<void>() : systemError(errno, "open the pipe", path);
}

/// Lets the user write to the pipe. Nothing is to be done for an unknown user, whose job can't be started.
Result<void> TestFolder::admit(const std::string& user) const {
  constexpr std::size_t longestEntry = std::size_t{1} << 16U;
  std::vector<char> buffer(longestEntry);
  passwd entry{};
  passwd* found = nullptr;
  ::getpwnam_r(user.c_str(), &entry, buffer.data(), buffer.size(), &found);
  if (!found || found->pw_uid == 0) return {};
  const bool isAdmitted = ::lchown(pipe().c_str(), found->pw_uid, static_cast<gid_t>(-1)) == 0 &&
                          ::chmod(m_path.parent_path().c_str(), passable) == 0 &&
                          ::chmod(m_path.c_str(), passable) == 0;
  return isAdmitted ? Result<void>() : systemError(errno, "let the user of the job write to the pipe", pipe());
}

void TestFolder::remove() {
  std::error_code failure;
  fs::remove_all(m_path, failure);  // what is left is found by the next process
}

}  // namespace mirvel
