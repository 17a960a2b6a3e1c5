#include "core/files/FileTrust.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

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

TEST(FileTrustTest, OthersMayNotWriteToFileOrFolder) {
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
  EXPECT_EQ(faultOf(folder.path(), "a"), "a") << "not even root's own group";
}

TEST(FileTrustTest, OnlyAPrivateGroupMayWriteToAUsersOwn) {
  const uid_t user = ::geteuid() == 0 ? stranger : ::geteuid();
  const gid_t group = ::geteuid() == 0 ? 4321 : ::getegid();
  for (const char* const writable : {"jobs/a", "jobs"}) {
    const testdata::TemporaryFolder folder;
    for (const fs::path& path : {folder.write("jobs/a", "content"), folder.path() / "jobs"}) {
      ASSERT_EQ(::chown(path.c_str(), user, group), 0);
      ASSERT_EQ(::chmod(path.c_str(), path.filename() == fs::path(writable).filename() ? 0775 : 0755), 0);
    }
    const auto isPrivate = [&](gid_t itsGroup, uid_t owner) { return itsGroup == group && owner == user; };
    EXPECT_EQ(faultOf(folder.path(), "jobs/a", user, isPrivate), "") << writable;
    EXPECT_EQ(faultOf(folder.path(), "jobs/a", user, [](gid_t, uid_t) { return false; }), writable);
  }
}

#ifdef __linux__
TEST(FileTrustTest, WithAnAccessListNoGroupIsPrivate) {
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
    EXPECT_EQ(faultOf(folder.path(), "jobs/a", user, everyGroup), "")
        << "the mask takes away the permission of those in the list";
  }
}
#endif

TEST(FileTrustTest, FilesFoldersAndLinksOfAStrangerAreNotTrusted) {
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
    EXPECT_TRUE(checkTrust(folder.path() / row.opened, stranger)) << "a file of the user, or of root";
    ASSERT_EQ(::lchown(file.c_str(), 0, 0), 0);
  }
}

TEST(FileTrustTest, TheFolderOfEachLinkIsChecked) {
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

TEST(FileTrustTest, AFileThatWasReplacedIsNotTrusted) {
  const testdata::TemporaryFolder folder;
  const auto file = folder.write("a", "bad");
  const FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
  EXPECT_TRUE(checkTrust(file, opened.number(), ::geteuid()));
  fs::rename(folder.write("b", "good"), file);
  EXPECT_FALSE(checkTrust(file, opened.number(), ::geteuid()));
}

TEST(PrivateGroupTest, AGroupIsPrivateToTheUserOfThatNameIfNobodyElseIsInIt) {
  const GroupUsers::User ann{"ann", 1000}, bob{"bob", 1001}, namesake{"toor", 1000};
  const struct {
    const char* what;
    GroupUsers group;
    bool isPrivate;
  } rows[] = {
      {"hers", {"ann", {ann}, {}}, true},
      {"found twice, and she is a member", {"ann", {ann, ann}, {"ann"}}, true},
      {"she has a second name", {"ann", {ann, namesake}, {}}, true},
      {"of all users", {"users", {ann}, {}}, false},
      {"another member", {"ann", {ann}, {"ann", "bob"}}, false},
      {"somebody else's primary group", {"ann", {ann, bob}, {}}, false},
      {"not her primary group", {"ann", {}, {"ann"}}, false},
      {"his", {"bob", {bob}, {}}, false},
      {"his, with her name", {"ann", {bob}, {}}, false},
  };
  for (const auto& row : rows) EXPECT_EQ(row.group.isPrivateTo(1000), row.isPrivate) << row.what;
}

#ifdef __linux__
TEST(PrivateGroupTest, UsersAreUnknownIfEnumeratingThemFails) {
  const struct {
    int failure;  ///< of the second call
    bool isKnown;
  } rows[] = {{0, true}, {ENOENT, true}, {ERANGE, false}, {EIO, false}, {EINTR, false}, {EMFILE, false}};
  for (const auto& row : rows) {
    char name[] = "ann";
    passwd ann{};
    ann.pw_name = name, ann.pw_uid = 1000, ann.pw_gid = 100;
    int calls = 0;
    const auto users = usersWithPrimary(100, [&](passwd*& found) {
      if (++calls > 1) return row.failure;
      found = &ann;
      return 0;
    });
    ASSERT_EQ(users.has_value(), row.isKnown) << row.failure;
    EXPECT_EQ(users ? users->size() : 1U, 1U) << row.failure;
  }
}
#endif

}  // namespace
}  // namespace mirvel
