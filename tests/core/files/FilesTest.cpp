#include "core/files/ReadFile.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <thread>

#include "core/files/ReplaceFile.h"
#include "core/process/FileDescriptor.h"
#include "support/AccessList.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testdata::bytes;
using testdata::TemporaryFolder;
using testing::UnorderedElementsAre;

TEST(ReadFileTest, FilesUpToTheLimitAreRead) {
  const TemporaryFolder folder;
  const std::string content(100000, 'x');
  const auto file = folder.write("file", content);
  const auto whole = readFile(file, content.size());
  ASSERT_TRUE(whole);
  EXPECT_EQ(*whole, content);
  const auto refused = readFile(file, content.size() - 1);
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().code, Error::Code::LimitExceeded);
  EXPECT_EQ(*readBeginning(file, 70000), content.substr(0, 70000));
  EXPECT_EQ(*readBeginning(file, 200000), content);
}

TEST(ReadFileTest, ErrorsHaveACodeAndThePath) {
  const TemporaryFolder folder;
  const std::pair<fs::path, Error::Code> rows[] = {
      {"/dev/zero", Error::Code::LimitExceeded},
      {folder.path(), Error::Code::Io},
      {folder.path() / "none", Error::Code::NotFound},
      {fs::path(std::string("/tmp/a\0b", 8)), Error::Code::BadArgument},
  };
  for (const auto& [path, code] : rows) {
    const auto result = readFile(path, 100000);
    ASSERT_FALSE(result) << path;
    EXPECT_EQ(result.error().code, code) << path;
    EXPECT_EQ(result.error().file, path);
  }
}

TEST(ReadFileTest, PipesAreReadToTheirEndWithoutWaitingForAWriter) {
  const TemporaryFolder folder;
  const auto path = folder.path() / "pipe";
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  const auto unattended = readFile(path, 10);
  ASSERT_TRUE(unattended);
  EXPECT_EQ(*unattended, "");

  const std::string content(200000, 'p');
  FileDescriptor end(::open(path.c_str(), O_RDWR | O_CLOEXEC));
  std::thread writer([&] {
    EXPECT_EQ(::write(end.number(), content.data(), content.size()), static_cast<ssize_t>(content.size()));
    end.reset();
  });
  const auto piped = readFile(path, content.size());
  writer.join();
  ASSERT_TRUE(piped);
  EXPECT_EQ(*piped, content);
}

std::vector<std::string> namesIn(const fs::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename().string());
  return names;
}

mode_t modeOf(const fs::path& path) {
  struct stat status {};
  EXPECT_EQ(::stat(path.c_str(), &status), 0);
  return status.st_mode & 07777U;
}

/// A device that is full at one step, counted from 1, and takes few bytes at a time.
class FailingCalls : public FileCalls {
 public:
  explicit FailingCalls(int failing) : m_failing(failing) {}
  bool renamed() const { return m_renamed; }
  bool failed() const { return m_count >= m_failing; }

  int create(int folder, const char* name, mode_t mode) override {
    return fails() ? -1 : FileCalls::create(folder, name, mode);
  }
  ssize_t write(int file, const char* data, std::size_t count) override {
    return fails() ? -1 : FileCalls::write(file, data, std::min<std::size_t>(count, 3));
  }
  int setMode(int file, mode_t mode) override { return fails() ? -1 : FileCalls::setMode(file, mode); }
  int sync(int file) override { return fails() ? -1 : FileCalls::sync(file); }
  int close(int file) override { return FileCalls::close(file) + (fails() ? -1 : 0); }
  int rename(int folder, const char* from, const char* to) override {
    if (fails()) return -1;
    m_renamed = true;
    return FileCalls::rename(folder, from, to);
  }

 private:
  bool fails() {
    errno = ENOSPC;
    return ++m_count == m_failing;
  }

  int m_failing;
  int m_count = 0;
  bool m_renamed = false;
};

TEST(ReplaceFileTest, AfterAFailureAtAnyStepOnlyTheOldFileRemains) {
  const TemporaryFolder folder;
  int step = 1;
  for (bool failed = true; failed; ++step) {
    const fs::path file = folder.write("job.plist", "old");
    FailingCalls calls(step);
    const auto result = replaceFile(file, "new content", newFileMode, &calls);
    failed = calls.failed();
    EXPECT_EQ(static_cast<bool>(result), !failed) << "step " << step;
    EXPECT_EQ(bytes(file), calls.renamed() ? "new content" : "old") << "step " << step;
    EXPECT_THAT(namesIn(folder.path()), UnorderedElementsAre("job.plist")) << "step " << step;
    ASSERT_LT(step, 100);
  }
  EXPECT_EQ(step - 2, 10);  // create, four writes, mode, flush, close, rename, flush of the folder
}

TEST(ReplaceFileTest, InterruptedCallsAndUsedNamesAreRetried) {
  class Troubled : public FileCalls {
   public:
    int create(int folder, const char* name, mode_t mode) override {
      errno = EEXIST;
      return ++m_creations < 3 ? -1 : FileCalls::create(folder, name, mode);
    }
    ssize_t write(int file, const char* data, std::size_t count) override {
      errno = EINTR;
      return ++m_writes % 2 == 1 ? -1 : FileCalls::write(file, data, std::min<std::size_t>(count, 2));
    }

   private:
    int m_creations = 0;
    int m_writes = 0;
  };
  const TemporaryFolder folder;
  Troubled calls;
  ASSERT_TRUE(replaceFile(folder.path() / "a", "content", newFileMode, &calls));
  EXPECT_EQ(bytes(folder.path() / "a"), "content");
}

TEST(ReplaceFileTest, OldFilesKeepTheirModeAndNewOnesAreNeverWritableForOthers) {
  const struct {
    std::optional<mode_t> old;
    mode_t umask, mostOpen, mode;
  } rows[] = {
      {0600, 0077, 0644, 0600}, {0755, 0077, 0644, 0755}, {0664, 0077, 0600, 0664}, {{}, 0000, 0644, 0644},
      {{}, 0002, 0644, 0644},   {{}, 0022, 0644, 0644},   {{}, 0027, 0644, 0640},   {{}, 0077, 0644, 0600},
      {{}, 0022, 0640, 0640},   {{}, 0022, 0000, 0600},
  };
  for (const auto& [old, mask, mostOpen, mode] : rows) {
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "file";
    if (old) {
      ASSERT_EQ(::chmod(folder.write("file", "old").c_str(), *old), 0);
    }
    const mode_t before = ::umask(mask);
    EXPECT_TRUE(replaceFile(file, "new", mostOpen));
    ::umask(before);
    EXPECT_EQ(modeOf(file), mode) << std::oct << mask << ' ' << mostOpen;
  }
}

TEST(ReplaceFileTest, NobodyCanReadAPrivateFileWhileItIsWritten) {
  class Looking : public FileCalls {
   public:
    mode_t seen = 0;
    ssize_t write(int file, const char* data, std::size_t count) override {
      struct stat status {};
      if (::fstat(file, &status) == 0) seen |= status.st_mode & 07777U;
      return FileCalls::write(file, data, count);
    }
  };
  const TemporaryFolder folder;
  const fs::path file = folder.write("private", "old");
  ASSERT_EQ(::chmod(file.c_str(), 0600), 0);
  Looking calls;
  EXPECT_TRUE(replaceFile(file, "secret", newFileMode, &calls));
  EXPECT_EQ(calls.seen, 0600U);
}

#ifdef __linux__
TEST(ReplaceFileTest, DroppingAnAccessListDoesNotGrantPermissions) {
  const TemporaryFolder folder;
  const fs::path file = folder.write("listed", "old");
  const testdata::AccessList list{.owner = 6, .user = 4, .group = 0, .mask = 4, .others = 0};
  if (!list.setOn(file, 1234)) GTEST_SKIP() << "there are no access lists here";
  ASSERT_EQ(modeOf(file), 0640U) << "the mask is in place of the group's permissions";
  const FileDescriptor open(::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const OwnerAndMode owner{.user = ::geteuid(), .group = ::getegid(), .mode = 0644};
  ASSERT_TRUE(replaceFileIn(open.number(), file, "new", owner));
  EXPECT_EQ(modeOf(file), 0600U);
}
#endif

TEST(ReplaceFileTest, OwnerAndExtendedAttributesAreKept) {
  const TemporaryFolder folder;
  const fs::path file = folder.write("kept", "old");
  if (::setxattr(file.c_str(), "user.note", "mine", 4, 0) != 0) GTEST_SKIP() << "no extended attributes here";
  const bool isRoot = ::geteuid() == 0;  // nobody else may give a file away
  const int given = isRoot ? ::chown(file.c_str(), 1234, 4321) : 0;
  ASSERT_EQ(given, 0);
  ASSERT_TRUE(replaceFile(file, "new"));
  std::string note(4, ' ');
  EXPECT_EQ(::getxattr(file.c_str(), "user.note", note.data(), note.size()), 4);
  EXPECT_EQ(note, "mine");
  struct stat status {};
  ASSERT_EQ(::stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, isRoot ? 1234 : ::geteuid());
  EXPECT_EQ(status.st_gid, isRoot ? 4321 : ::getegid());
}

TEST(ReplaceFileTest, AnotherGroupDoesNotGetThePermissionsOfTheOldOne) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can give a file to a group to which its owner doesn't belong";
  for (const auto& [old, mode] : {std::pair<mode_t, mode_t>{0640, 0600}, {0664, 0644}, {0755, 0755}}) {
    const TemporaryFolder folder;
    const fs::path file = folder.write("grouped", "old");
    ASSERT_EQ(::chown(folder.path().c_str(), 1234, 1234), 0);
    ASSERT_EQ(::chown(file.c_str(), 1234, 4321), 0);
    ASSERT_EQ(::chmod(file.c_str(), old), 0);
    ASSERT_EQ(::seteuid(1234), 0);
    const auto replaced = replaceFile(file, "new");
    ASSERT_EQ(::seteuid(0), 0);
    EXPECT_TRUE(replaced);
    EXPECT_EQ(modeOf(file), mode) << std::oct << old;
  }
}

TEST(ReplaceFileTest, LinksStayLinksAndTheirTargetsAreReplaced) {
  const TemporaryFolder folder;
  folder.write("real/target", "old");
  fs::create_symlink("real/target", folder.path() / "relative");
  fs::create_symlink(folder.path() / "relative", folder.path() / "chained");
  fs::create_symlink("real/missing", folder.path() / "dangling");
  fs::create_symlink("loop", folder.path() / "loop");

  EXPECT_TRUE(replaceFile(folder.path() / "chained", "new"));
  EXPECT_EQ(bytes(folder.path() / "real/target"), "new");
  EXPECT_TRUE(fs::is_symlink(folder.path() / "chained"));
  EXPECT_TRUE(fs::is_symlink(folder.path() / "relative"));
  EXPECT_TRUE(replaceFile(folder.path() / "dangling", "made"));
  EXPECT_EQ(bytes(folder.path() / "real/missing"), "made");
  EXPECT_FALSE(replaceFile(folder.path() / "loop", "x"));
}

TEST(ReplaceFileTest, PathsThatCannotBeFilesAreRejected) {
  const TemporaryFolder folder;
  folder.write("folder/inside", "x");
  folder.write("file", "x");
  ASSERT_EQ(::mkfifo((folder.path() / "pipe").c_str(), 0600), 0);
  const std::pair<fs::path, Error::Code> rows[] = {
      {folder.path() / "folder", Error::Code::BadArgument},
      {folder.path() / "folder" / "", Error::Code::BadArgument},
      {folder.path() / "pipe", Error::Code::BadArgument},
      {fs::path(std::string("/tmp/a\0b", 8)), Error::Code::BadArgument},
      {folder.path() / "missing" / "file", Error::Code::NotFound},
      {folder.path() / "file" / "file", Error::Code::NotFound},
      {"/proc/file", Error::Code::NotFound},  // not even root can create files in this folder
  };
  for (const auto& [path, code] : rows) {
    const auto result = replaceFile(path, "new");
    ASSERT_FALSE(result) << path;
    EXPECT_EQ(result.error().code, code) << result.error().text();
  }
}

TEST(ReplaceFileTest, TheLongestNameAndAnEmptyContentAreAccepted) {
  const TemporaryFolder folder;
  const fs::path file = folder.path() / std::string(255, 'n');
  EXPECT_TRUE(replaceFile(file, ""));
  EXPECT_EQ(bytes(file), "");
}

}  // namespace
}  // namespace mirvel
