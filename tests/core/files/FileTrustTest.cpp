#include "core/files/FileTrust.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#ifdef __linux__
#include <sys/xattr.h>
#endif
#include <unistd.h>

#include "core/process/FileDescriptor.h"
#include "support/AccessList.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;

constexpr uid_t stranger = 54321;

/// The path at fault, relative to the folder; empty: the file is trusted.
std::string faultOf(const fs::path& folder, const char* file, uid_t user = ::geteuid(),
                    const PrivateGroups& isPrivate = isPrivateGroup) {
  const auto trusted = checkTrust(folder / file, user, isPrivate);
  if (trusted) return {};
  EXPECT_EQ(trusted.error().code, Error::Code::NotTrusted) << trusted.error().text();
  return fs::path(trusted.error().file).lexically_relative(folder);
}

TEST(FileTrustTest, NobodyElseMayWriteToFileOrFolder) {
  const struct {
    mode_t folder, file;
    const char* fault;
  } rows[] = {
      {0755, 0644, ""},     {0700, 0600, ""},  {0755, 0646, "jobs/a"},  {0755, 0666, "jobs/a"}, {0757, 0644, "jobs"},
      {0777, 0644, "jobs"}, {01777, 0644, ""}, {01777, 0646, "jobs/a"}, {0755, 0444, ""},
  };
  for (const auto& row : rows) {
    const testdata::TemporaryFolder folder;
    const auto file = folder.write("jobs/a", "content");
    ASSERT_EQ(::chmod(file.c_str(), row.file), 0);
    ASSERT_EQ(::chmod(file.parent_path().c_str(), row.folder), 0);
    EXPECT_EQ(faultOf(folder.path(), "jobs/a"), row.fault) << std::oct << row.folder << ' ' << row.file;
  }
}

TEST(FileTrustTest, NoGroupMayWriteToRootsFiles) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can give a file to another group";
  const testdata::TemporaryFolder folder;
  const auto file = folder.write("a", "content");
  ASSERT_EQ(::chown(file.c_str(), 0, 54321), 0);
  ASSERT_EQ(::chmod(file.c_str(), 0664), 0);
  EXPECT_EQ(faultOf(folder.path(), "a"), "a");
  ASSERT_EQ(::chown(file.c_str(), 0, 0), 0);
  EXPECT_EQ(faultOf(folder.path(), "a"), "a") << "of root's files not even root's own";
}

TEST(FileTrustTest, OnlyAPrivateGroupMayWriteToAUsersOwn) {
  const uid_t user = ::geteuid() == 0 ? stranger : ::geteuid();
  const struct {
    const char* opened;  ///< to the group
    bool isPrivate;
    const char* fault;
  } rows[] = {{"jobs/a", true, ""}, {"jobs", true, ""}, {"jobs/a", false, "jobs/a"}, {"jobs", false, "jobs"}};
  for (const auto& row : rows) {
    const testdata::TemporaryFolder folder;
    const gid_t group = ::geteuid() == 0 ? 4321 : ::getegid();
    for (const fs::path& path : {folder.write("jobs/a", "content"), folder.path() / "jobs"}) {
      ASSERT_EQ(::chown(path.c_str(), user, group), 0);
      ASSERT_EQ(::chmod(path.c_str(), 0755), 0);
    }
    ASSERT_EQ(::chmod((folder.path() / row.opened).c_str(), 0775), 0);
    const auto isPrivate = [&](gid_t itsGroup, uid_t owner) {
      return row.isPrivate && itsGroup == group && owner == user;
    };
    EXPECT_EQ(faultOf(folder.path(), "jobs/a", user, isPrivate), row.fault) << row.opened;
  }
}

#ifdef __linux__
TEST(FileTrustTest, AnAccessListMakesAGroupNoLongerPrivate) {
  const testdata::TemporaryFolder folder;
  const auto file = folder.write("jobs/a", "content");
  const uid_t user = ::geteuid() == 0 ? 4321 : ::geteuid();
  for (const fs::path& path : {file, file.parent_path()}) {
    ASSERT_EQ(::chown(path.c_str(), user, static_cast<gid_t>(-1)), 0);
    ASSERT_EQ(::chmod(path.c_str(), 0775), 0);
  }
  const auto everyGroup = [](gid_t, uid_t) { return true; };
  EXPECT_EQ(faultOf(folder.path(), "jobs/a", user, everyGroup), "");
  for (const char* path : {"jobs/a", "jobs"}) {
    const fs::path listed = folder.path() / path;
    const testdata::AccessList list{.owner = 7, .user = 7, .group = 5, .mask = 7, .others = 5};
    if (!list.setOn(listed, stranger)) GTEST_SKIP() << "there are no access lists here";
    EXPECT_EQ(faultOf(folder.path(), "jobs/a", user, everyGroup), path);
    ASSERT_EQ(::chmod(listed.c_str(), 0755), 0);
    EXPECT_EQ(faultOf(folder.path(), "jobs/a", user, everyGroup), "") << "nobody that it names may write any more";
  }
}
#endif

TEST(FileTrustTest, NothingOfAStrangerIsTrusted) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can give a file to another user";
  const testdata::TemporaryFolder folder;
  folder.write("jobs/a", "content");
  fs::create_symlink("jobs/a", folder.path() / "link");
  EXPECT_EQ(faultOf(folder.path(), "link"), "");
  const struct {
    const char* file;
    const char* opened;
  } rows[] = {{"jobs/a", "jobs/a"}, {"jobs", "jobs/a"}, {"jobs/a", "link"}, {"jobs", "link"}, {"link", "link"}};
  for (const auto& row : rows) {
    const fs::path file = folder.path() / row.file;
    ASSERT_EQ(::lchown(file.c_str(), stranger, 0), 0);
    EXPECT_EQ(faultOf(folder.path(), row.opened), row.file) << row.opened;
    EXPECT_TRUE(checkTrust(folder.path() / row.opened, stranger)) << "his own, and root's";
    ASSERT_EQ(::lchown(file.c_str(), 0, 0), 0);
  }
}

TEST(FileTrustTest, EachLinkOnTheWayCounts) {
  const testdata::TemporaryFolder folder;
  folder.write("jobs/a", "content");
  fs::create_directories(folder.path() / "open");
  fs::create_symlink(folder.path() / "open" / "second", folder.path() / "first");
  fs::create_symlink("../jobs/a", folder.path() / "open" / "second");
  EXPECT_EQ(faultOf(folder.path(), "first"), "");
  ASSERT_EQ(::chmod((folder.path() / "open").c_str(), 0777), 0);
  EXPECT_EQ(faultOf(folder.path(), "first"), "open");
  fs::create_symlink("loop", folder.path() / "loop");
  EXPECT_FALSE(checkTrust(folder.path() / "loop", ::geteuid()));
}

TEST(FileTrustTest, TheOpenFileIsJudgedAndNotWhatTookItsName) {
  const testdata::TemporaryFolder folder;
  const auto file = folder.write("a", "bad");
  const FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
  EXPECT_TRUE(checkTrust(file, opened.number(), ::geteuid()));
  fs::rename(folder.write("b", "good"), file);
  EXPECT_FALSE(checkTrust(file, opened.number(), ::geteuid()));
}

}  // namespace
}  // namespace mirvel
