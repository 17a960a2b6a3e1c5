#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

#include "helpers/FakeJobHost.h"
#include "helpers/Soak.h"
#include "helpers/action/RequestHandler.h"
#include "helpers/jobfiles/UserJobFiles.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using propertylist::Dictionary;
using testdata::bytes;
using testdata::jobText;

/// Job files of different sizes, none of which is part of another.
std::string content(int number) {
  return jobText("a", "/bin/" + std::string(static_cast<std::size_t>(number % 3) * 20000 + 1, 'x'));
}

bool isWhole(const fs::path& file) {
  const std::string found = bytes(file);
  return found == content(0) || found == content(1) || found == content(2);
}

class InterruptionTest : public testing::Test {
 protected:
  testdata::TemporaryFolder root;
  testdata::FakeJobHost host;
  UserJobFiles files{JobFolders({root.path()})};
  RequestHandler handler{{.files = files, .host = host, .uninstall = {}}};
  testdata::Killer killer;
  fs::path first = root.path() / "first.plist", second = root.path() / "second.plist";

  Dictionary write(const fs::path& to, int number, const fs::path& old = {}) {
    return handler.handle(testdata::writeRequest(0, to, content(number), old));
  }

  /// Runs the check in a child process.
  static bool inChild(const std::function<bool()>& check) {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(check() ? 0 : 1);
    int status = 0;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }
};

TEST_F(InterruptionTest, AKilledWriteLeavesTheOldFileOrTheNewOne) {
  ASSERT_EQ(write(first, 0), Dictionary());
  for (int i = 0; i < testdata::tries(40, 1000); ++i) {
    killer.killWithin([&](int number) { write(first, number); });
    ASSERT_TRUE(isWhole(first)) << i;
  }
}

TEST_F(InterruptionTest, AKilledMoveLeavesTheJobExactlyOnce) {
  ASSERT_EQ(write(first, 0), Dictionary());
  for (int i = 0; i < testdata::tries(40, 1000); ++i) {
    killer.killWithin([&](int number) {
      const bool goes = fs::exists(first);
      write(goes ? second : first, number, goes ? first : second);
    });
    const bool hasFirst = fs::exists(first), hasSecond = fs::exists(second);
    ASSERT_NE(hasFirst, hasSecond) << i;
    ASSERT_TRUE(isWhole(hasFirst ? first : second)) << i;
  }
}

TEST_F(InterruptionTest, WithoutRoomTheOldFileStays) {
  ASSERT_EQ(write(first, 0), Dictionary());
  EXPECT_TRUE(inChild([&] {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{.rlim_cur = 1000, .rlim_max = 1000};
    return ::setrlimit(RLIMIT_FSIZE, &small) == 0 && write(first, 2).find("error") != nullptr &&
           write(second, 2, first).find("error") != nullptr;
  }));
  EXPECT_EQ(bytes(first), content(0));
  EXPECT_EQ(std::distance(fs::directory_iterator(root.path()), fs::directory_iterator()), 1);
}

TEST_F(InterruptionTest, AFolderThatMayNotBeWrittenKeepsItsFiles) {
  ASSERT_EQ(write(first, 0), Dictionary());
  ASSERT_EQ(::chmod(root.path().c_str(), 0555), 0);
  // Root may write anywhere, so the child gives up root's rights.
  EXPECT_TRUE(inChild([&] {
    if (::geteuid() == 0 && ::setuid(65534) != 0) return false;
    return write(first, 1).find("error") != nullptr && write(second, 1, first).find("error") != nullptr &&
           handler.handle(testdata::deleteRequest(first)).find("error") != nullptr;
  }));
  EXPECT_EQ(bytes(first), content(0));
}

}  // namespace
}  // namespace mirvel
